#include "FanControlText.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "views/menubar/MenuBarColor.h"

#include <cmath>

double targetRpm(double percent, double maxRpm) {
    return percent / 100.0 * maxRpm;
}

QString sliderValueText(double percent, double rpm) {
    return QString::asprintf("%.0f%% — %.0f RPM", percent, rpm);
}

QString fanFigureText(const char* name, double rpm) {
    return QString::fromLatin1(name) + QString::number(wholeNumber(rpm));
}

FanStatus fanStatus(bool isManualMode, long long fanSpeed, long long fanMaxSpeed) {
    if (isManualMode)
        return {QStringLiteral("Manual override"), MenuBarColors::warm, std::nullopt};
    if (fanSpeed <= 0)
        return {QStringLiteral("Idle — fans off"), PopoverStyle::green, std::nullopt};
    const double load =
        fanMaxSpeed > 0 ? static_cast<double>(fanSpeed) / static_cast<double>(fanMaxSpeed) : 0.0;
    const QColor color = load > 0.8   ? MenuBarColors::hot
                         : load > 0.5 ? MenuBarColors::warm
                                      : PopoverStyle::green;
    return {percentText(load) + QStringLiteral(" capacity"), color, load};
}
