#pragma once

#include "settings/Enumerations.h"

#include <QString>

/// Whether an item's value text goes in a label beside its icon. Automatic puts it beside
/// on desktops whose tray draws such labels (GNOME Shell's AppIndicator extension, Ubuntu,
/// Unity, MATE: `currentDesktop` is XDG_CURRENT_DESKTOP, a colon-separated list) and
/// inside the icon everywhere else, where a label would be dropped unseen.
bool valueTextBesideIcon(TrayTextPlacement placement, const QString& currentDesktop);
