#include "MenuBarColor.h"

#include "settings/Contrast.h"

namespace {
// Below this ΔE a glance at the panel cannot tell 40 °C from 95 °C.
constexpr double warningLookalike = 30.0;
} // namespace

QColor temperatureColor(double celsius, const QColor& normal) {
    if (celsius >= 90.0)
        return MenuBarColors::hot;
    if (celsius >= 75.0)
        return MenuBarColors::warm;
    if (colourDifference(normal, MenuBarColors::hot) < warningLookalike ||
        colourDifference(normal, MenuBarColors::warm) < warningLookalike)
        return MenuBarColors::calm;
    return normal;
}

QColor menuBarColor(SensorType type, const MenuBarReadings& readings,
                    const MenuBarAppearance& appearance) {
    switch (type) {
    case SensorType::cpu:
        return appearance.cpuColor;
    case SensorType::memory:
        return appearance.memoryColor;
    case SensorType::disk:
        return appearance.diskColor;
    case SensorType::networkIn:
    case SensorType::networkOut:
    case SensorType::network:
        return appearance.networkColor;
    case SensorType::cpuTemp:
        return temperatureColor(readings.temperature, appearance.temperatureColor);
    case SensorType::gpuTemp:
        return temperatureColor(readings.gpuTemperature, appearance.temperatureColor);
    case SensorType::fan:
        return appearance.fanColor;
    }
    return appearance.cpuColor;
}
