#pragma once

#include "FormPage.h"
#include "LaunchAtLogin.h"
#include "SensorHelperActions.h"
#include "settings/Enumerations.h"

class AppSettings;
class QLabel;
class ToggleSwitch;

/// The "General" tab: update interval, display mode, appearance, launch at login and alerts.
class GeneralSettingsView : public FormPage {
    Q_OBJECT
public:
    GeneralSettingsView(AppSettings& settings, LaunchAtLogin launchAtLogin,
                        SensorHelperActions helperActions = {}, QWidget* parent = nullptr);

    /// The line under the mode picker for `mode`.
    static QString appearanceExplanation(AppearanceMode mode);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addUpdateInterval();
    void addDisplayMode();
    void addAppearance();
    void addStartup();
    void addSensorHelper();
    void refreshSensorHelper();
    void setLaunchAtLogin(bool on);

    AppSettings& settings;
    LaunchAtLogin launchAtLogin;
    ToggleSwitch* launchToggle = nullptr;
    SensorHelperActions helperActions;
    class QLabel* helperState = nullptr;
    class QPushButton* uninstallButton = nullptr;
};
