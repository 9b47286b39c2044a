#pragma once

#include "LaunchAtLogin.h"
#include "SensorHelperActions.h"

#include <QTabWidget>

#include <functional>

class AppSettings;

/// The settings window's content: the tabs "General", "Monitors", "Appearance" and
/// "About". Every control writes its setting at once; there is nothing to apply.
class SettingsView : public QTabWidget {
    Q_OBJECT
public:
    /// `syncStatusItems` runs after a tray item is switched on or off.
    SettingsView(AppSettings& settings, std::function<void()> syncStatusItems,
                 LaunchAtLogin launchAtLogin, SensorHelperActions helperActions = {},
                 QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void tintTabIcons();
};
