#pragma once

#include "monitors/FanDrive.h"
#include "monitors/ThermalReadings.h"

#include <QColor>
#include <QString>

#include <optional>

/// A slider's reading: "%.0f%% — %.0f RPM" of the percentage and its target speed, or
/// the percentage alone for a fan driven by duty (no maximum to take a share of).
QString sliderValueText(const FanDrive& drive, double percent);

/// "Min: ", "Target: " or "Max: " followed by the whole RPM, or "—" when the chip does
/// not report that figure.
QString fanFigureText(const char* name, const std::optional<double>& rpm);

/// The fan section's line for ThermalMonitor::daemonProblem(): "Manual control refused:
/// <reason>." for a refusal, else "Manual control stopped: <problem>."; empty for none.
QString daemonProblemText(const std::string& problem);

/// The fan section's "Status:" reading.
struct FanStatus {
    QString text;
    QColor color;
    std::optional<double> load; ///< the bar's value, shown only for a load reading

    bool operator==(const FanStatus&) const = default;
};

/// "Manual override" in orange while manual mode is on; else "Idle — fans off" in green
/// when the published fan speed is 0; else the load (speed / maximum) as a whole
/// percentage and "% capacity", red above 0.8, orange above 0.5, green otherwise; or,
/// when the fan reports no maximum (0), its speed alone in green, with no bar.
FanStatus fanStatus(bool isManualMode, long long fanSpeed, long long fanMaxSpeed);
