#pragma once

#include <QColor>
#include <QWidget>

#include <map>
#include <vector>

struct FanDrive;
class AppSettings;
class ColoredProgressBar;
class FanReadoutRow;
class FanSliderRow;
class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;
class SystemMonitor;
class ToggleSwitch;

/// The fan section of the fan popover. Without the installed helper it offers the
/// one-time setup; with it, the "Manual Fan Override" switch, the fans' status and one
/// row per fan: read only while the fans run automatically, a slider each under
/// manual control. Blocking work (installing, starting the daemon, fan commands)
/// runs on the fan-control queue; the view's state changes only on the main thread.
class FanDetailContent : public QWidget {
    Q_OBJECT
public:
    FanDetailContent(SystemMonitor& monitor, AppSettings& settings, QWidget* parent = nullptr);

    bool isManualMode() const { return isManualMode_; }
    bool isInstalling() const { return isInstalling_; }
    bool isSyncing() const { return isSyncing_; }
    const std::map<long long, double>& fanPercentages() const { return fanPercentages_; }

    /// Re-reads the monitor, the settings and the installed test. Change notices call it queued.
    void refresh();

protected:
    /// Aligns the switch with the daemon's real state each time the section appears.
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeSetupCard();
    QWidget* makeControls();
    void refreshSetupCard();
    void refreshControls();
    void refreshRows();

    void enableFanControl();
    void manualSwitchToggled(bool on);
    void switchManualOn();
    void switchManualOff();
    void keepPercent(long long fanId, double percent);
    void sendDrive(const FanDrive& drive);

    SystemMonitor& monitor;
    AppSettings& settings;
    QColor sensorColor;
    bool isManualMode_ = false;
    bool isInstalling_ = false;
    bool installFailed_ = false;
    std::map<long long, double> fanPercentages_;
    bool isSyncing_ = false;

    QWidget* setupCard;
    QLabel* setupTitle;
    bool helperOutdated = false;
    QPushButton* enableButton;
    QProgressBar* installProgress;
    QLabel* failureLine;

    QWidget* controls;
    ToggleSwitch* manualSwitch;
    QLabel* status;
    QLabel* problemLine;
    ColoredProgressBar* statusBar;
    QLabel* warning;
    QVBoxLayout* rowsColumn;
    std::vector<FanReadoutRow*> readoutRows; // rows past the fan count are hidden
    std::vector<FanSliderRow*> sliderRows;
};
