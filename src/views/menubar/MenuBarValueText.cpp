#include "MenuBarValueText.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

const QString emDash = QStringLiteral(u"\u2014");

// Readings are finite by construction of the sampler; one that is not is a fault
// upstream, and showing a made-up number would hide it.
std::int64_t wholeNumber(double value, const char* what) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!std::isfinite(value) || value >= limit || value < -limit)
        qFatal("Vorlune: %s reading %g cannot be shown as a whole number", what, value);
    return static_cast<std::int64_t>(value);
}

QString formatted(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return QString::fromLatin1(buffer);
}

QString percentText(double fraction, const char* what) {
    return QString::number(wholeNumber(fraction * 100.0, what)) + u'%';
}

QString temperatureText(double celsius, const char* what) {
    if (!(celsius > 0.0))
        return emDash;
    return QString::number(wholeNumber(celsius, what)) + QStringLiteral(u"\u00B0C");
}

} // namespace

QString rateText(double bytesPerSecond) {
    if (bytesPerSecond >= 1048576.0)
        return formatted("%.1fM", bytesPerSecond / 1048576.0);
    if (bytesPerSecond >= 1024.0)
        return formatted("%.0fK", bytesPerSecond / 1024.0);
    return formatted("%.0fB", bytesPerSecond);
}

QString menuBarValueText(SensorType type, const MenuBarReadings& readings) {
    switch (type) {
    case SensorType::cpu:
        return percentText(readings.cpuUsage, "CPU usage");
    case SensorType::memory:
        if (!(readings.memoryTotal > 0.0))
            return QStringLiteral("0%");
        return percentText(readings.memoryUsed / readings.memoryTotal, "memory");
    case SensorType::disk:
        return formatted("%.0f%%", readings.diskFraction() * 100.0);
    case SensorType::networkIn:
        return rateText(readings.networkBytesIn);
    case SensorType::networkOut:
        return rateText(readings.networkBytesOut);
    case SensorType::network:
        return QStringLiteral(u"\u2193") + rateText(readings.networkBytesIn) +
               QStringLiteral(u" \u2191") + rateText(readings.networkBytesOut);
    case SensorType::cpuTemp:
        return temperatureText(readings.temperature, "CPU temperature");
    case SensorType::gpuTemp:
        return temperatureText(readings.gpuTemperature, "GPU temperature");
    case SensorType::fan:
        if (readings.fanSpeed < 1)
            return emDash;
        return QString::number(readings.fanSpeed);
    }
    return {};
}

QString widestValueText(SensorType type) {
    // Four digits and a unit ("1023K", "99.9M"); only rates of 100 MB/s and more are wider,
    // rare enough on a desktop to be drawn smaller, or widen the label, when they come.
    const QString widestRate = QStringLiteral("1023K");
    switch (type) {
    case SensorType::cpu:
    case SensorType::memory:
    case SensorType::disk:
        return QStringLiteral("100%");
    case SensorType::networkIn:
    case SensorType::networkOut:
        return widestRate;
    case SensorType::network:
        return QStringLiteral(u"\u2193") + widestRate + QStringLiteral(u" \u2191") + widestRate;
    case SensorType::cpuTemp:
    case SensorType::gpuTemp:
        return QStringLiteral(u"100\u00B0C");
    case SensorType::fan:
        return QStringLiteral("8888");
    }
    return {};
}

QString menuBarIcon(SensorType type) {
    switch (type) {
    case SensorType::cpu:
        return QStringLiteral(u"\u2699");
    case SensorType::memory:
        return QStringLiteral(u"\u229F");
    case SensorType::disk:
        return QStringLiteral(u"\u25C9");
    case SensorType::networkIn:
        return QStringLiteral(u"\u2193");
    case SensorType::networkOut:
        return QStringLiteral(u"\u2191");
    case SensorType::network:
        return {};
    case SensorType::cpuTemp:
    case SensorType::gpuTemp:
        return QStringLiteral(u"\U0001F321");
    case SensorType::fan:
        return QStringLiteral(u"\u2388");
    }
    return {};
}

QString menuBarToolTip(SensorType type, const MenuBarReadings& readings) {
    const auto raw = rawValue(type);
    QString text = QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size())) +
                   QStringLiteral(": ") + menuBarValueText(type, readings);
    if (type == SensorType::cpu && readings.busiestCore)
        text += u'\n' + busiestCoreText(*readings.busiestCore);
    return text;
}

QString busiestCoreText(const BusiestCore& core) {
    // A per-core share can pass 1 when a counter steps back; no core is busier than busy.
    return QStringLiteral(u"Busiest core: CPU ") + QString::number(core.index) +
           QStringLiteral(u" \u00B7 ") +
           percentText(std::clamp(core.usage, 0.0, 1.0), "busiest core");
}
