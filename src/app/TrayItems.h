#pragma once

#include "TrayItem.h"
#include "tray/SensorType.h"

#include <QMenu>

#include <functional>
#include <memory>
#include <optional>

/// A tray item of the protocol the desktop's host speaks: a StatusNotifierItem of its own
/// when a watcher is on the session bus, else Qt's XEmbed tray icon. `type` is the reading
/// shown, nullopt for the main item.
std::unique_ptr<TrayItem> makeTrayItem(std::optional<SensorType> type);

/// An item's menu: its own popover first ("Show CPU Details", or "Show All Readings" for
/// the main item), "Settings…", then "Quit Vorlune".
std::unique_ptr<QMenu> makeTrayMenu(std::optional<SensorType> type,
                                    const std::function<void()>& showOwn,
                                    const std::function<void()>& openSettings);
