#include "PopoverText.h"

#include <cmath>

long long wholeNumber(double value) {
    constexpr double limit = 9.2e18; // inside the 64-bit range, with room for rounding
    if (!std::isfinite(value) || std::fabs(value) >= limit)
        return 0;
    return static_cast<long long>(value);
}

QString percentText(double fraction) {
    return QString::number(wholeNumber(fraction * 100.0)) + QLatin1Char('%');
}

QString popoverRateText(double bytesPerSecond) {
    const double v = std::isfinite(bytesPerSecond) ? bytesPerSecond : 0.0;
    if (v >= 1048576.0)
        return QString::asprintf("%.1f MB/s", v / 1048576.0);
    if (v >= 1024.0)
        return QString::asprintf("%.0f KB/s", v / 1024.0);
    return QString::asprintf("%.0f B/s", v);
}

QString temperatureText(double celsius) {
    if (!(celsius > 0.0))
        return QStringLiteral("—");
    return QString::number(wholeNumber(celsius)) + QStringLiteral("°C");
}

QString rpmText(double rpm) {
    return QString::number(wholeNumber(rpm)) + QStringLiteral(" RPM");
}

QString updateIntervalText(double seconds) {
    return QStringLiteral("Updating every ") + QString::number(wholeNumber(seconds)) +
           QLatin1Char('s');
}
