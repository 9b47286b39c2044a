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
