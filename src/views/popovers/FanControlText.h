#pragma once

#include "monitors/ThermalReadings.h"

#include <QColor>
#include <QString>

#include <optional>

/// The target speed for a manual setting: percent / 100 x the fan's maximum. The
/// minimum is deliberately not used, so 0 % asks for 0 RPM.
double targetRpm(double percent, double maxRpm);

/// A slider's reading: "%.0f%% — %.0f RPM" of the percentage and its target speed.
QString sliderValueText(double percent, double rpm);

/// "Min: ", "Target: " or "Max: " followed by the whole RPM.
QString fanFigureText(const char* name, double rpm);

/// The fan section's "Status:" reading.
struct FanStatus {
    QString text;
    QColor color;
    std::optional<double> load; ///< the bar's value, shown only for a load reading

    bool operator==(const FanStatus&) const = default;
};

/// "Manual override" in orange while manual mode is on; else "Idle — fans off" in green
/// when the published fan speed is 0; else the load (speed / maximum) as a whole
/// percentage and "% capacity", red above 0.8, orange above 0.5, green otherwise.
FanStatus fanStatus(bool isManualMode, long long fanSpeed, long long fanMaxSpeed);
