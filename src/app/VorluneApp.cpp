#include "VorluneApp.h"

#include "AlertCenter.h"

#include "NoTrayHostNotice.h"
#include "PopoverWindow.h"
#include "StatusBarManager.h"
#include "TrayHostWatch.h"
#include "TrayItems.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "tray/Symbols.h"
#include "views/popovers/FanControlQueue.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/settings/SettingsWindowController.h"

#include <QApplication>
#include <QDateTime>
#include <QMenu>
#include <QTimer>

namespace {
constexpr int mainPopoverWidth = 300;
constexpr qint64 reopenGuardMilliseconds = 300;
constexpr int popupHandOverMilliseconds = 150;
} // namespace

VorluneApp::VorluneApp(const QString& settingsFile, QObject* parent)
    : QObject(parent),
      appSettings(settingsFile.isEmpty() ? std::make_unique<AppSettings>()
                                         : std::make_unique<AppSettings>(settingsFile)),
      monitor(std::make_unique<SystemMonitor>()),
      settingsWindow(std::make_unique<SettingsWindowController>(
          *appSettings, [] { StatusBarManager::shared().syncStatusItems(); })) {
    StatusBarManager::shared().setOpenSettings([this] { settingsWindow->showSettings(); });
    ThermalMonitor* thermal = &monitor->thermalMonitor();
    settingsWindow->setSensorHelperActions(
        {[thermal] { return thermal->isHelperInstalled(); },
         [this, thermal](std::function<void(bool)> done) {
             runFanControlWork(
                 *monitor, this, [thermal] { return thermal->uninstallHelper(); }, std::move(done));
         }});
    // A change made to the settings file by another process shows within one tick.
    connect(monitor.get(), &SystemMonitor::sampled, appSettings.get(),
            [this] { appSettings->reloadIfChanged(); });
    connect(appSettings.get(), &AppSettings::objectWillChange, this, [this] {
        QMetaObject::invokeMethod(this, &VorluneApp::applyAppearanceIfChanged,
                                  Qt::QueuedConnection);
    });
    alerts = std::make_unique<AlertCenter>(*monitor, *appSettings, [this](SensorType type) {
        StatusBarManager::shared().showDetail(type, mainExtra.get(), true);
    });
}

VorluneApp::~VorluneApp() {
    StatusBarManager::shared().removeAllStatusItems();
    if (mainPopover)
        delete mainPopover.data();
}

void VorluneApp::start() {
    trayHostWatch = std::make_unique<TrayHostWatch>();
    connect(trayHostWatch.get(), &TrayHostWatch::trayHostAppeared, this, &VorluneApp::onTrayHost);
    connect(trayHostWatch.get(), &TrayHostWatch::stillNoTrayHost, this, [this] {
        noTrayNotice = std::make_unique<NoTrayHostNotice>();
        noTrayNotice->show();
    });
    trayHostWatch->start();
}

void VorluneApp::onTrayHost() {
    noTrayNotice.reset();
    mainExtra = makeTrayItem(std::nullopt);
    mainMenu = makeTrayMenu(
        std::nullopt, [this] { showMainPopover(); }, [this] { settingsWindow->showSettings(); });
    mainExtra->setMenu(mainMenu.get());
    mainExtra->setSymbol(applicationTraySymbol(), QStringLiteral("Vorlune"));
    connect(mainExtra.get(), &TrayItem::activated, this, &VorluneApp::toggleMainPopover);
    StatusBarManager::shared().setup(*monitor, *appSettings);
    applyAppearanceIfChanged();
    emit trayReady();
}

void VorluneApp::applyAppearanceIfChanged() {
    const int mode = static_cast<int>(appSettings->appearanceMode());
    if (mode == appliedAppearance)
        return;
    appliedAppearance = mode;
    appSettings->applyAppearance(*qApp);
}

bool VorluneApp::mainPopoverIsOpen() const {
    return mainPopover && mainPopover->isVisible();
}

void VorluneApp::toggleMainPopover() {
    if (mainPopoverIsOpen()) {
        mainPopover->close();
        return;
    }
    // The click that closed the popover by landing on the tray symbol must not reopen it.
    if (QDateTime::currentMSecsSinceEpoch() - mainPopoverClosedAt < reopenGuardMilliseconds)
        return;
    showMainPopover();
}

void VorluneApp::showMainPopoverFromOutside() {
    openMainPopover(false);
}

void VorluneApp::showMainPopover() {
    openMainPopover(true);
}

void VorluneApp::openMainPopover(bool atCursor) {
    if (mainPopoverIsOpen()) {
        mainPopover->raise();
        mainPopover->activateWindow();
        return;
    }
    // A tapped section hands over to its detail: the main popover steps aside
    // rather than keep a grab over the window or popover that opens.
    auto* content = new MonitorPopoverView(*monitor, *appSettings, [this](SensorType type) {
        const QRect place = mainPopover ? mainPopover->geometry() : QRect();
        if (mainPopover)
            mainPopover->close();
        // The detail opens a moment later, once the closed popup's pointer grab is
        // released: a popup that opens while another still holds it loses its own.
        QTimer::singleShot(popupHandOverMilliseconds, this, [type, place] {
            StatusBarManager::shared().showDetail(type, nullptr, true, place);
        });
    });
    mainPopover = new PopoverWindow(content, mainPopoverWidth);
    mainPopover->setWindowTitle(QStringLiteral("Vorlune"));
    appSettings->applyAppearance(*mainPopover);
    connect(mainPopover, &PopoverWindow::closed, this, [this] {
        mainPopoverClosedAt = QDateTime::currentMSecsSinceEpoch();
        if (mainExtra)
            mainExtra->setPopoverOpen(false);
    });
    if (mainExtra)
        mainExtra->setPopoverOpen(true);
    mainPopover->showUnder(mainExtra ? mainExtra->anchor() : QRect(), atCursor);
}
