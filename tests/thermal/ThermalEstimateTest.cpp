#include "monitors/ThermalEstimate.h"
#include "ThermalReadingsPrinter.h"
#include "monitors/FanFigures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace {

TEST(ThermalEstimate, CpuTemperatureFollowsThermalState) {
    const struct {
        std::optional<ThermalState> state;
        double cpuTemp;
    } cases[] = {
        {ThermalState::nominal, 45.0},
        {ThermalState::fair, 65.0},
        {ThermalState::serious, 80.0},
        {ThermalState::critical, 95.0},
        {std::nullopt, 50.0},
        {static_cast<ThermalState>(4), 50.0},
        {static_cast<ThermalState>(-1), 50.0},
    };
    for (const auto& c : cases) {
        ThermalReadings expected;
        expected.cpuTemp = c.cpuTemp;
        EXPECT_EQ(estimatedThermalReadings(c.state), expected)
            << "state " << (c.state ? static_cast<int>(*c.state) : -100);
    }
}

ThermalReadings withFirstFan(double actual, double max) {
    ThermalReadings readings;
    readings.fans.push_back({0, actual, 0, max, 0});
    readings.fans.push_back({1, 9999, 0, 9999, 0});
    return readings;
}

TEST(FanFigures, FirstFanSpeedAndMaximum) {
    const struct {
        ThermalReadings readings;
        long long speed;
        long long maxSpeed;
    } cases[] = {
        {ThermalReadings{}, 0, 6000},
        {withFirstFan(1234.9, 5800.7), 1234, 5800},
        {withFirstFan(-0.9, 0.5), 0, 1},
        {withFirstFan(0, 0), 0, 1},
        {withFirstFan(-1500.2, -3), -1500, 1},
        {withFirstFan(9.2e18, 1.0), 9200000000000000000LL, 1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(firstFanSpeed(c.readings), c.speed);
        EXPECT_EQ(firstFanMaxSpeed(c.readings), c.maxSpeed);
    }
}

TEST(FanFiguresDeathTest, UnconvertibleSpeedEndsTheProcess) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(firstFanSpeed(withFirstFan(nan, 6000)), "Fan speed of nan RPM");
    EXPECT_DEATH(firstFanSpeed(withFirstFan(-inf, 6000)), "Fan speed of -inf RPM");
    EXPECT_DEATH(firstFanSpeed(withFirstFan(9.3e18, 6000)), "cannot be converted");
    EXPECT_DEATH(firstFanMaxSpeed(withFirstFan(0, inf)), "Fan maximum of inf RPM");
    EXPECT_DEATH(firstFanMaxSpeed(withFirstFan(0, -1e19)), "cannot be converted");
}

} // namespace
