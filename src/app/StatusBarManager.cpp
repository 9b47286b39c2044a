#include "StatusBarManager.h"

#include "PopoverWindow.h"
#include "TrayItems.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "settings/HexColor.h"
#include "tray/TrayTextSide.h"
#include "views/menubar/ButtonModel.h"
#include "views/menubar/SampledReadings.h"
#include "views/popovers/SensorDetailPopoverView.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

#include <utility>

namespace {

constexpr int detailWidth = 320;
constexpr int detailWindowHeight = 380;
// A popover closed by a click on its own item sees that click right after: it must not reopen.
constexpr int reopenGuardMilliseconds = 300;

MenuBarAppearance appearanceOf(SensorType type, const AppSettings& settings) {
    MenuBarAppearance appearance;
    appearance.style = settings.effectiveStyle(sensorKeyWord(type));
    appearance.showIcons = settings.persistShowIcons();
    appearance.graphWidth = settings.graphWidth();
    appearance.graphHeight = settings.graphHeight();
    appearance.cpuColor = toQColor(colorFromHex(settings.cpuColorHex()));
    appearance.memoryColor = toQColor(colorFromHex(settings.memoryColorHex()));
    appearance.diskColor = toQColor(colorFromHex(settings.diskColorHex()));
    appearance.networkColor = toQColor(colorFromHex(settings.networkColorHex()));
    appearance.temperatureColor = toQColor(colorFromHex(settings.temperatureColorHex()));
    appearance.fanColor = toQColor(colorFromHex(settings.fanColorHex()));
    return appearance;
}

} // namespace

StatusBarManager& StatusBarManager::shared() {
    static StatusBarManager manager;
    return manager;
}

StatusBarManager::StatusBarManager() = default;

StatusBarManager::~StatusBarManager() {
    disconnect(terminationObserver);
    removeAllStatusItems();
}

void StatusBarManager::setup(SystemMonitor& newMonitor, AppSettings& newSettings) {
    for (const auto& connection : cancellables)
        disconnect(connection);
    cancellables.clear();
    disconnect(terminationObserver);

    monitor = &newMonitor;
    settings = &newSettings;
    terminationObserver = connect(qApp, &QCoreApplication::aboutToQuit, this,
                                  &StatusBarManager::removeAllStatusItems);
    cancellables.push_back(
        connect(settings, &AppSettings::objectWillChange, this, &StatusBarManager::scheduleSync));
    cancellables.push_back(connect(monitor, &SystemMonitor::objectWillChange, this,
                                   &StatusBarManager::scheduleUpdate));
    syncStatusItems();
}

// Notices come many per tick; a run already scheduled will see every change, so
// further notices join it instead of queueing another.
void StatusBarManager::scheduleSync() {
    appearances.clear();
    textBesideIcon.reset();
    if (syncPending)
        return;
    syncPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            syncPending = false;
            syncStatusItems();
        },
        Qt::QueuedConnection);
}

void StatusBarManager::scheduleUpdate() {
    if (updatePending)
        return;
    updatePending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            updatePending = false;
            updateStatusItems();
        },
        Qt::QueuedConnection);
}

std::set<SensorType> StatusBarManager::desiredSensorTypes(const AppSettings& settings) {
    std::set<SensorType> desired;
    if (settings.persistCPU())
        desired.insert(SensorType::cpu);
    if (settings.persistMemory())
        desired.insert(SensorType::memory);
    if (settings.persistDisk())
        desired.insert(SensorType::disk);
    if (!settings.networkCombined()) {
        if (settings.persistNetworkIn())
            desired.insert(SensorType::networkIn);
        if (settings.persistNetworkOut())
            desired.insert(SensorType::networkOut);
    } else if (settings.persistNetwork()) {
        desired.insert(SensorType::network);
    }
    if (settings.persistCPUTemp())
        desired.insert(SensorType::cpuTemp);
    if (settings.persistGPUTemp())
        desired.insert(SensorType::gpuTemp);
    if (settings.persistFan())
        desired.insert(SensorType::fan);
    return desired;
}

void StatusBarManager::syncStatusItems() {
    if (!settings)
        return;
    appearances.clear();
    textBesideIcon.reset();
    const std::set<SensorType> desired = desiredSensorTypes(*settings);
    for (auto it = statusItems.begin(); it != statusItems.end();) {
        const SensorType type = it->first;
        if (desired.count(type)) {
            ++it;
            continue;
        }
        if (auto popover = popovers.find(it->first); popover != popovers.end()) {
            if (popover->second)
                popover->second->close();
            popovers.erase(it->first);
        }
        it = statusItems.erase(it);
        menus.erase(type);
    }
    for (SensorType type : desired) {
        if (statusItems.count(type))
            continue;
        auto item = makeTrayItem(type);
        const int tag = sensorTypeIndex(type);
        connect(item.get(), &TrayItem::activated, this, [this, tag] { statusItemClicked(tag); });
        auto menu = makeTrayMenu(
            type, [this, tag] { statusItemClicked(tag); },
            [this] {
                if (openSettings)
                    openSettings();
            });
        item->setMenu(menu.get());
        statusItems.emplace(type, std::move(item));
        menus[type] = std::move(menu);
    }
    updateStatusItems();
}

ButtonModel StatusBarManager::buttonModel(SensorType type, const SystemMonitor& monitor,
                                          const AppSettings& settings) {
    return buildButtonModel(type, sampledReadings(monitor), appearanceOf(type, settings));
}

void StatusBarManager::updateStatusItems() {
    if (!monitor || !settings)
        return;
    if (statusItems.empty())
        return;
    const MenuBarReadings readings = sampledReadings(*monitor);
    if (!textBesideIcon)
        textBesideIcon = valueTextBesideIcon(settings->persistTextPlacement(),
                                             qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    for (auto& [type, item] : statusItems)
        item->setModel(buildButtonModel(type, readings, appearanceFor(type)), *textBesideIcon);
}

const MenuBarAppearance& StatusBarManager::appearanceFor(SensorType type) {
    auto found = appearances.find(type);
    if (found == appearances.end())
        found = appearances.emplace(type, appearanceOf(type, *settings)).first;
    return found->second;
}

void StatusBarManager::removeAllStatusItems() {
    for (auto& [type, popover] : std::exchange(popovers, {}))
        if (popover)
            popover->close();
    statusItems.clear();
    menus.clear();
}

void StatusBarManager::statusItemClicked(int tag) {
    const auto type = sensorTypeAt(tag);
    if (!type)
        return;
    const auto item = statusItems.find(*type);
    showDetail(*type, item != statusItems.end() ? item->second.get() : nullptr, false);
}

PopoverWindow* StatusBarManager::openPopover(SensorType type) const {
    const auto found = popovers.find(type);
    return found != popovers.end() && found->second && found->second->isVisible()
               ? found->second.data()
               : nullptr;
}

void StatusBarManager::forgetPopover(SensorType type) {
    popoverClosedAt[type].start();
    popovers.erase(type);
}

void StatusBarManager::showDetail(SensorType type, const TrayItem* anchor, bool fromMainPopover,
                                  const QRect& near) {
    if (PopoverWindow* open = openPopover(type)) {
        if (fromMainPopover) {
            open->raise();
            open->activateWindow();
            return;
        }
        open->close();
        popovers.erase(type);
        return;
    }
    if (!fromMainPopover) {
        const auto closed = popoverClosedAt.find(type);
        if (closed != popoverClosedAt.end() && closed->second.isValid() &&
            closed->second.elapsed() < reopenGuardMilliseconds)
            return;
    }
    // Closing a popover reports back and edits the map, so walk a copy.
    for (auto& [openType, popover] : std::exchange(popovers, {}))
        if (popover && popover->isVisible())
            popover->close();
    if (!monitor || !settings)
        return;

    auto* content = new SensorDetailPopoverView(type, *monitor, *settings, [this] {
        if (openSettings)
            openSettings();
    });
    const QString title =
        QString::fromUtf8(rawValue(type).data(), static_cast<qsizetype>(rawValue(type).size()));
    const auto item = statusItems.find(type);
    TrayItem* ownItem = item != statusItems.end() ? item->second.get() : nullptr;
    const TrayItem* chosenAnchor = ownItem ? ownItem : anchor;

    if (!chosenAnchor) {
        auto* window =
            new QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                                     Qt::CustomizeWindowHint);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowTitle(title);
        auto* layout = new QVBoxLayout(window);
        layout->setContentsMargins(0, 0, 0, 0);
        // Resizable: the content stretches to the width and scrolls in a short window.
        auto* scroll = new QScrollArea(window);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scroll->setWidgetResizable(true);
        content->setMinimumWidth(detailWidth);
        content->setMaximumWidth(QWIDGETSIZE_MAX);
        // Its own height at most: a taller window leaves the rest empty below it.
        content->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
        scroll->setWidget(content);
        layout->addWidget(scroll);
        window->setMinimumSize(detailWidth, detailWindowHeight / 2);
        const QScreen* screen = QGuiApplication::primaryScreen();
        const int tallest = screen ? screen->availableGeometry().height() - 80 : 600;
        window->resize(detailWidth,
                       std::clamp(content->sizeHint().height(), detailWindowHeight, tallest));
        if (screen && near.isValid()) {
            const QRect area = screen->availableGeometry();
            window->move(std::clamp(near.left(), area.left(), area.right() - window->width()),
                         std::clamp(near.top(), area.top(), area.bottom() - window->height()));
        } else if (screen) {
            window->move(screen->availableGeometry().center() - window->rect().center());
        }
        window->show();
        window->raise();
        window->activateWindow();
        return;
    }

    auto* popover = new PopoverWindow(content, detailWidth);
    // Never shown by a popup, but names the window for window lists and desktop tests.
    popover->setWindowTitle(QStringLiteral("Vorlune: ") + title);
    settings->applyAppearance(*popover);
    popovers[type] = popover;
    QPointer<TrayItem> quietItem(ownItem);
    connect(popover, &PopoverWindow::closed, this, [this, type, popover, quietItem] {
        if (quietItem)
            quietItem->setPopoverOpen(false);
        if (popovers.count(type) && popovers[type] == popover)
            forgetPopover(type);
        else
            popoverClosedAt[type].start();
    });
    if (ownItem)
        ownItem->setPopoverOpen(true);
    popover->showUnder(chosenAnchor->anchor());
}
