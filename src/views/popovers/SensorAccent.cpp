#include "SensorAccent.h"

#include "settings/AppSettings.h"
#include "settings/HexColor.h"

QColor colorFromSetting(const QString& hex) {
    return toQColor(colorFromHex(hex));
}

QColor sensorAccentColor(SensorType type, const AppSettings& settings) {
    switch (type) {
    case SensorType::cpu:
        return colorFromSetting(settings.cpuColorHex());
    case SensorType::memory:
        return colorFromSetting(settings.memoryColorHex());
    case SensorType::disk:
        return colorFromSetting(settings.diskColorHex());
    case SensorType::networkIn:
    case SensorType::networkOut:
    case SensorType::network:
        return colorFromSetting(settings.networkColorHex());
    case SensorType::cpuTemp:
    case SensorType::gpuTemp:
        return colorFromSetting(settings.temperatureColorHex());
    case SensorType::fan:
        return colorFromSetting(settings.fanColorHex());
    }
    return colorFromSetting(settings.cpuColorHex());
}

QString sensorSymbolName(SensorType type) {
    switch (type) {
    case SensorType::cpu:
        return QStringLiteral("cpu");
    case SensorType::memory:
        return QStringLiteral("memorychip");
    case SensorType::disk:
        return QStringLiteral("internaldrive");
    case SensorType::networkIn:
        return QStringLiteral("arrow.down.circle");
    case SensorType::networkOut:
        return QStringLiteral("arrow.up.circle");
    case SensorType::network:
        return QStringLiteral("arrow.up.arrow.down.circle");
    case SensorType::cpuTemp:
        return QStringLiteral("thermometer.high");
    case SensorType::gpuTemp:
        return QStringLiteral("thermometer.medium");
    case SensorType::fan:
        return QStringLiteral("fan");
    }
    return {};
}
