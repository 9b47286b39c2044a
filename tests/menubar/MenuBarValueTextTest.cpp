#include "views/menubar/MenuBarValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

TEST(RateText, UnitsChangeAt1024And1048576) {
    const struct {
        double bytesPerSecond;
        const char* expected;
    } cases[] = {
        {0.0, "0B"},         {1023.0, "1023B"},     {1023.6, "1024B"},         {1024.0, "1K"},
        {1535.0, "1K"},      {1537.0, "2K"},        {1048575.0, "1024K"},      {1048576.0, "1.0M"},
        {1572864.0, "1.5M"}, {10485760.0, "10.0M"}, {1073741824.0, "1024.0M"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rateText(c.bytesPerSecond), QString::fromUtf8(c.expected)) << c.bytesPerSecond;
}

struct ValueCase {
    const char* name;
    SensorType type;
    std::function<void(MenuBarReadings&)> set;
    const char* expected;
};

TEST(MenuBarValueText, EachTypeShowsItsReading) {
    const ValueCase cases[] = {
        {"cpu truncates", SensorType::cpu, [](auto& r) { r.cpuUsage = 0.429; }, "42%"},
        {"cpu idle", SensorType::cpu, [](auto& r) { r.cpuUsage = 0.0; }, "0%"},
        {"cpu full", SensorType::cpu, [](auto& r) { r.cpuUsage = 1.0; }, "100%"},
        {"memory", SensorType::memory,
         [](auto& r) {
             r.memoryUsed = 6.0;
             r.memoryTotal = 16.0;
         },
         "37%"},
        {"memory without total", SensorType::memory,
         [](auto& r) {
             r.memoryUsed = 6.0;
             r.memoryTotal = 0.0;
         },
         "0%"},
        {"disk rounds", SensorType::disk,
         [](auto& r) {
             r.diskUsed = 42.6;
             r.diskTotal = 100.0;
         },
         "43%"},
        {"disk without total", SensorType::disk,
         [](auto& r) {
             r.diskUsed = 5.0;
             r.diskTotal = 0.0;
         },
         "0%"},
        {"download", SensorType::networkIn, [](auto& r) { r.networkBytesIn = 1572864.0; }, "1.5M"},
        {"upload", SensorType::networkOut, [](auto& r) { r.networkBytesOut = 2048.0; }, "2K"},
        {"combined", SensorType::network,
         [](auto& r) {
             r.networkBytesIn = 1572864.0;
             r.networkBytesOut = 100.0;
         },
         "\u21931.5M \u2191100B"},
        {"cpu temperature truncates", SensorType::cpuTemp, [](auto& r) { r.temperature = 64.9; },
         "64\u00B0C"},
        {"cpu temperature absent", SensorType::cpuTemp, [](auto& r) { r.temperature = 0.0; },
         "\u2014"},
        {"cpu temperature negative", SensorType::cpuTemp, [](auto& r) { r.temperature = -5.0; },
         "\u2014"},
        {"cpu temperature NaN", SensorType::cpuTemp, [](auto& r) { r.temperature = std::nan(""); },
         "\u2014"},
        {"gpu temperature", SensorType::gpuTemp, [](auto& r) { r.gpuTemperature = 91.0; },
         "91\u00B0C"},
        {"gpu temperature absent", SensorType::gpuTemp, [](auto& r) { r.gpuTemperature = 0.0; },
         "\u2014"},
        {"fan", SensorType::fan, [](auto& r) { r.fanSpeed = 2400; }, "2400"},
        {"fan slowest shown", SensorType::fan, [](auto& r) { r.fanSpeed = 1; }, "1"},
        {"fan stopped", SensorType::fan, [](auto& r) { r.fanSpeed = 0; }, "\u2014"},
    };
    for (const ValueCase& c : cases) {
        MenuBarReadings readings;
        c.set(readings);
        EXPECT_EQ(menuBarValueText(c.type, readings), QString::fromUtf8(c.expected)) << c.name;
    }
}

TEST(MenuBarValueText, IconsAreOnePerTypeAndNoneForTheCombinedNetwork) {
    const struct {
        SensorType type;
        const char* icon;
    } cases[] = {
        {SensorType::cpu, "\u2699"},         {SensorType::memory, "\u229F"},
        {SensorType::disk, "\u25C9"},        {SensorType::networkIn, "\u2193"},
        {SensorType::networkOut, "\u2191"},  {SensorType::network, ""},
        {SensorType::cpuTemp, "\U0001F321"}, {SensorType::gpuTemp, "\U0001F321"},
        {SensorType::fan, "\u2388"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(menuBarIcon(c.type), QString::fromUtf8(c.icon)) << rawValue(c.type);
}

TEST(MenuBarValueText, ToolTipIsRawValueAndValueText) {
    MenuBarReadings readings;
    readings.cpuUsage = 0.42;
    EXPECT_EQ(menuBarToolTip(SensorType::cpu, readings), QStringLiteral("CPU: 42%"));
    readings.networkBytesIn = 1023.0;
    EXPECT_EQ(menuBarToolTip(SensorType::networkIn, readings),
              QString::fromUtf8("Net \u2193: 1023B"));
}

TEST(MenuBarValueTextDeathTest, NonFiniteReadingThatMustBeAWholeNumberIsFatal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    MenuBarReadings readings;
    readings.cpuUsage = std::nan("");
    EXPECT_DEATH(menuBarValueText(SensorType::cpu, readings), "cannot be shown as a whole number");
    readings = {};
    readings.temperature = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(menuBarValueText(SensorType::cpuTemp, readings),
                 "cannot be shown as a whole number");
}

} // namespace
