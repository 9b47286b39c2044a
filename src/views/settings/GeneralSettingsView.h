#pragma once

#include "FormPage.h"
#include "LaunchAtLogin.h"
#include "settings/Enumerations.h"

class AppSettings;
class QLabel;
class ToggleSwitch;

/// The "General" tab: update interval, display mode, appearance and launch at login.
class GeneralSettingsView : public FormPage {
    Q_OBJECT
public:
    GeneralSettingsView(AppSettings& settings, LaunchAtLogin launchAtLogin,
                        QWidget* parent = nullptr);

    /// The line under the mode picker for `mode`.
    static QString appearanceExplanation(AppearanceMode mode);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addUpdateInterval();
    void addDisplayMode();
    void addAppearance();
    void addStartup();
    void setLaunchAtLogin(bool on);

    AppSettings& settings;
    LaunchAtLogin launchAtLogin;
    ToggleSwitch* launchToggle = nullptr;
};
