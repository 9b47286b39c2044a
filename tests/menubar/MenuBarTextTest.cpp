#include "settings/Color.h"
#include "settings/Contrast.h"
#include "settings/HexColor.h"
#include "settings/ThemeColors.h"
#include "views/menubar/MenuBarColor.h"
#include "views/menubar/MenuBarValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace {

using S = SensorType;

TEST(RateText, UnitsChangeAt1024And1048576) {
    const std::pair<double, const char*> cases[] = {
        {0.0, "0B"},         {1023.0, "1023B"},     {1023.6, "1024B"},         {1024.0, "1K"},
        {1535.0, "1K"},      {1537.0, "2K"},        {1048575.0, "1024K"},      {1048576.0, "1.0M"},
        {1572864.0, "1.5M"}, {10485760.0, "10.0M"}, {1073741824.0, "1024.0M"},
    };
    for (const auto& [bytesPerSecond, expected] : cases)
        EXPECT_EQ(rateText(bytesPerSecond), QString::fromUtf8(expected)) << bytesPerSecond;
}

TEST(MenuBarValueText, EachTypeShowsItsReadingAndADashWhenThereIsNone) {
    const std::tuple<SensorType, MenuBarReadings, const char*> cases[] = {
        {S::cpu, {.cpuUsage = 0.0}, "0%"},
        {S::cpu, {.cpuUsage = 0.05}, "5%"},
        {S::cpu, {.cpuUsage = 0.059}, "5%"}, // truncated, never rounded up
        {S::cpu, {.cpuUsage = 1.0}, "100%"},
        {S::memory, {.memoryUsed = 6.0, .memoryTotal = 16.0}, "37%"},
        {S::memory, {.memoryUsed = 6.0, .memoryTotal = 0.0}, "0%"},
        {S::disk, {.diskUsed = 42.6, .diskTotal = 100.0}, "43%"}, // rounded
        {S::disk, {.diskUsed = 5.0, .diskTotal = 0.0}, "0%"},
        {S::networkIn, {.networkBytesIn = 1572864.0}, "1.5M"},
        {S::networkOut, {.networkBytesOut = 2048.0}, "2K"},
        {S::network,
         {.networkBytesIn = 1572864.0, .networkBytesOut = 100.0},
         "\u21931.5M \u2191100B"},
        {S::cpuTemp, {.temperature = 64.9}, "64\u00B0C"},
        {S::cpuTemp, {.temperature = 0.0}, "\u2014"},
        {S::cpuTemp, {.temperature = NAN}, "\u2014"},
        {S::gpuTemp, {.gpuTemperature = 91.0}, "91\u00B0C"},
        {S::gpuTemp, {.temperature = 91.0}, "\u2014"},
        {S::fan, {.fanSpeed = 1}, "1"},
        {S::fan, {.fanSpeed = 0}, "\u2014"},
    };
    for (const auto& [type, readings, expected] : cases)
        EXPECT_EQ(menuBarValueText(type, readings), QString::fromUtf8(expected))
            << rawValue(type) << " expected " << expected;
}

TEST(MenuBarColor, TemperaturesTurnWarmAt75AndHotAt90AndOthersKeepTheirColour) {
    MenuBarAppearance look;
    look.temperatureColor = QColor(0x023E8A); // Ocean's, nothing like a warning
    const QColor usual = look.temperatureColor, warm = MenuBarColors::warm;
    const std::tuple<SensorType, MenuBarReadings, QColor> cases[] = {
        {S::cpuTemp, {.temperature = 74.99}, usual},
        {S::cpuTemp, {.temperature = 75.0}, warm},
        {S::cpuTemp, {.temperature = 89.99}, warm},
        {S::cpuTemp, {.temperature = 90}, MenuBarColors::hot},
        {S::gpuTemp, {.gpuTemperature = 75.0}, warm},
        {S::gpuTemp, {.temperature = 95.0}, usual}, // each follows its own reading
        {S::cpu, {.temperature = 95.0}, look.cpuColor},
    };
    for (const auto& [type, readings, expected] : cases)
        EXPECT_EQ(menuBarColor(type, readings, look), expected)
            << rawValue(type) << " " << readings.temperature << " " << readings.gpuTemperature;
}

TEST(MenuBarColor, NormalTemperaturesNeverLookLikeAWarningInAnyTheme) {
    for (const ThemePreset preset : allCases<ThemePreset>())
        for (const bool dark : {false, true}) {
            const std::string_view hex = themeColorHexes(preset, dark)[4];
            const QColor normal =
                temperatureColor(50, toQColor(colorFromHex(QString::fromLatin1(hex))));
            EXPECT_GE(colourDifference(normal, MenuBarColors::hot), 30) << hex;
            EXPECT_GE(colourDifference(normal, MenuBarColors::warm), 30) << hex;
        }
    EXPECT_NEAR(colourDifference(Qt::black, Qt::white), 100.0, 0.5);
}

} // namespace
