#pragma once

#include "LaunchAtLogin.h"
#include "SensorHelperActions.h"
#include "settings/Enumerations.h"

#include <QObject>
#include <QPointer>

#include <functional>

class AppSettings;
class QWidget;

/// Owns the settings window, at most one at a time. Closing the window drops it;
/// the next showSettings() builds a fresh one.
class SettingsWindowController : public QObject {
    Q_OBJECT
public:
    /// `syncStatusItems` runs after a tray item is switched on or off (the app passes
    /// its tray's own sync; empty does nothing); `launchAtLogin` is the
    /// autostart entry the "Launch at login" switch manages.
    explicit SettingsWindowController(AppSettings& settings,
                                      std::function<void()> syncStatusItems = {},
                                      LaunchAtLogin launchAtLogin = LaunchAtLogin(),
                                      QObject* parent = nullptr);
    ~SettingsWindowController() override;

    /// Brings the open window to the front, or builds, centres and shows a new one.
    /// Either way the window takes the current appearance and is activated.
    void showSettings();

    /// What the General tab's sensor helper row does; windows built later get it.
    void setSensorHelperActions(SensorHelperActions actions) { helperActions = std::move(actions); }

    /// The window built last, while it exists.
    QWidget* window() const { return settingsWindow; }

    static constexpr int windowWidth = 450;
    static constexpr int windowHeight = 500;

private:
    QWidget* buildWindow();
    void applyAppearance(QWidget& window);

    AppSettings& settings;
    std::function<void()> syncStatusItems;
    LaunchAtLogin launchAtLogin;
    SensorHelperActions helperActions;
    QPointer<QWidget> settingsWindow;
    AppearanceMode appliedMode = AppearanceMode::system;
};
