#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class AlertCenter;
class AppSettings;
class NoTrayHostNotice;
class PopoverWindow;
class SettingsWindowController;
class QMenu;
class TrayItem;
class SystemMonitor;
class TrayHostWatch;

/// The application: the one monitor and settings, the always-present tray
/// symbol with the main popover, and the shared StatusBarManager.
class VorluneApp : public QObject {
    Q_OBJECT
public:
    /// Uses the settings file at `settingsFile` when given (else the user's own).
    explicit VorluneApp(const QString& settingsFile = {}, QObject* parent = nullptr);
    ~VorluneApp() override;

    SystemMonitor& systemMonitor() { return *monitor; }
    AppSettings& settings() { return *appSettings; }

    /// Waits for a tray host, then shows the tray symbol and the items.
    void start();
    /// Opens the main popover, or closes it when it is open.
    void toggleMainPopover();
    void showMainPopover();
    /// The same for a request from outside (a second start): without a click to go by,
    /// it opens where the main item was last clicked, else at the panel's corner.
    void showMainPopoverFromOutside();
    bool mainPopoverIsOpen() const;

signals:
    /// The tray symbol and the items are up.
    void trayReady();

private:
    void openMainPopover(bool atCursor);
    void onTrayHost();
    void applyAppearanceIfChanged();

    std::unique_ptr<AppSettings> appSettings;
    std::unique_ptr<SystemMonitor> monitor;
    std::unique_ptr<SettingsWindowController> settingsWindow;
    std::unique_ptr<TrayItem> mainExtra;
    std::unique_ptr<QMenu> mainMenu;
    std::unique_ptr<TrayHostWatch> trayHostWatch;
    std::unique_ptr<NoTrayHostNotice> noTrayNotice;
    std::unique_ptr<AlertCenter> alerts;
    QPointer<PopoverWindow> mainPopover;
    int appliedAppearance = -1;
    qint64 mainPopoverClosedAt = 0;
};
