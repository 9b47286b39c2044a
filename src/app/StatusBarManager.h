#pragma once

#include "tray/SensorType.h"
#include "views/menubar/MenuBarAppearance.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QRect>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

class AppSettings;
class QMenu;
class PopoverWindow;
class SystemMonitor;
class TrayItem;
struct ButtonModel;

/// Keeps one tray item per enabled SensorType in step with the settings and
/// the readings, and opens their detail popovers. One shared instance.
class StatusBarManager : public QObject {
    Q_OBJECT
public:
    static StatusBarManager& shared();
    ~StatusBarManager() override;

    void setup(SystemMonitor& monitor, AppSettings& settings);
    void syncStatusItems();
    void updateStatusItems();
    void removeAllStatusItems();
    void statusItemClicked(int tag);
    /// Opens, toggles or raises the detail popover of `type`. `anchor` is the item to
    /// open under when the type has no item of its own.
    /// `near`, when valid, is where the main popover stood: a detail with no item of its
    /// own opens there rather than mid-screen.
    void showDetail(SensorType type, const TrayItem* anchor, bool fromMainPopover,
                    const QRect& near = {});

    static std::set<SensorType> desiredSensorTypes(const AppSettings& settings);
    /// The button model of one item from the current readings and settings.
    static ButtonModel buttonModel(SensorType type, const SystemMonitor& monitor,
                                   const AppSettings& settings);

    /// What the detail popovers' settings button runs.
    void setOpenSettings(std::function<void()> action) { openSettings = std::move(action); }

    const std::map<SensorType, std::unique_ptr<TrayItem>>& items() const { return statusItems; }
    /// The open detail popover of `type`, if any.
    PopoverWindow* openPopover(SensorType type) const;

    StatusBarManager();

private:
    void scheduleSync();
    void scheduleUpdate();
    void forgetPopover(SensorType type);
    const MenuBarAppearance& appearanceFor(SensorType type);

    std::map<SensorType, std::unique_ptr<TrayItem>> statusItems;
    std::map<SensorType, std::unique_ptr<QMenu>> menus;
    std::map<SensorType, QPointer<PopoverWindow>> popovers;
    std::map<SensorType, QElapsedTimer> popoverClosedAt;
    // Parsed colours and styles per item; dropped on every settings change.
    std::map<SensorType, MenuBarAppearance> appearances;
    std::optional<bool> textBesideIcon;
    QPointer<SystemMonitor> monitor;
    QPointer<AppSettings> settings;
    QMetaObject::Connection terminationObserver;
    std::vector<QMetaObject::Connection> cancellables;
    bool syncPending = false;
    bool updatePending = false;
    std::function<void()> openSettings;
};
