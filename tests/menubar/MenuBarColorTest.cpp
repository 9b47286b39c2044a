#include "views/menubar/MenuBarColor.h"

#include <gtest/gtest.h>

namespace {

TEST(MenuBarColor, TemperaturesTurnOrangeAt75AndRedAt90) {
    MenuBarAppearance appearance;
    appearance.temperatureColor = QColor(0x11, 0x22, 0x33);
    const struct {
        double celsius;
        QColor expected;
    } cases[] = {
        {0.0, appearance.temperatureColor}, {74.99, appearance.temperatureColor},
        {75.0, MenuBarColors::warm},        {89.99, MenuBarColors::warm},
        {90.0, MenuBarColors::hot},         {120.0, MenuBarColors::hot},
    };
    for (const auto& c : cases) {
        MenuBarReadings cpuHot;
        cpuHot.temperature = c.celsius;
        EXPECT_EQ(menuBarColor(SensorType::cpuTemp, cpuHot, appearance), c.expected) << c.celsius;
        MenuBarReadings gpuHot;
        gpuHot.gpuTemperature = c.celsius;
        EXPECT_EQ(menuBarColor(SensorType::gpuTemp, gpuHot, appearance), c.expected) << c.celsius;
        // Each temperature item follows its own reading only.
        EXPECT_EQ(menuBarColor(SensorType::gpuTemp, cpuHot, appearance),
                  appearance.temperatureColor);
    }
}

TEST(MenuBarColor, OtherTypesTakeTheirColourSetting) {
    MenuBarAppearance appearance;
    appearance.cpuColor = QColor(1, 0, 0);
    appearance.memoryColor = QColor(2, 0, 0);
    appearance.diskColor = QColor(3, 0, 0);
    appearance.networkColor = QColor(4, 0, 0);
    appearance.fanColor = QColor(6, 0, 0);
    MenuBarReadings readings;
    readings.temperature = 95.0; // must not leak into other types
    const struct {
        SensorType type;
        QColor expected;
    } cases[] = {
        {SensorType::cpu, appearance.cpuColor},
        {SensorType::memory, appearance.memoryColor},
        {SensorType::disk, appearance.diskColor},
        {SensorType::networkIn, appearance.networkColor},
        {SensorType::networkOut, appearance.networkColor},
        {SensorType::network, appearance.networkColor},
        {SensorType::fan, appearance.fanColor},
    };
    for (const auto& c : cases)
        EXPECT_EQ(menuBarColor(c.type, readings, appearance), c.expected) << rawValue(c.type);
}

} // namespace
