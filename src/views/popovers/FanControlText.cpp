#include "FanControlText.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "views/menubar/MenuBarColor.h"

#include <cmath>

QString sliderValueText(const FanDrive& drive, double percent) {
    if (drive.kind == FanDrive::Kind::speed)
        return QString::asprintf("%.0f%% — %.0f RPM", percent, drive.value);
    return QString::asprintf("%.0f%%", percent);
}

QString fanFigureText(const char* name, const std::optional<double>& rpm) {
    return QString::fromLatin1(name) +
           (rpm ? QString::number(wholeNumber(*rpm)) : QStringLiteral("—"));
}

QString daemonProblemText(const std::string& problem) {
    if (problem.empty())
        return {};
    constexpr std::string_view refused = "refused: ";
    if (problem.starts_with(refused))
        return QStringLiteral("Manual control refused: %1.")
            .arg(QString::fromStdString(problem.substr(refused.size())));
    return QStringLiteral("Manual control stopped: %1.").arg(QString::fromStdString(problem));
}

FanStatus fanStatus(bool isManualMode, long long fanSpeed, long long fanMaxSpeed) {
    if (isManualMode)
        return {QStringLiteral("Manual override"), MenuBarColors::warm, std::nullopt};
    if (fanSpeed <= 0)
        return {QStringLiteral("Idle — fans off"), PopoverStyle::green, std::nullopt};
    if (fanMaxSpeed <= 0)
        return {QString::number(fanSpeed) + QStringLiteral(" RPM"), PopoverStyle::green,
                std::nullopt};
    const double load =
        fanMaxSpeed > 0 ? static_cast<double>(fanSpeed) / static_cast<double>(fanMaxSpeed) : 0.0;
    const QColor color = load > 0.8   ? MenuBarColors::hot
                         : load > 0.5 ? MenuBarColors::warm
                                      : PopoverStyle::green;
    return {percentText(load) + QStringLiteral(" capacity"), color, load};
}
