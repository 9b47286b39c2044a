#pragma once

#include <optional>
#include <string>
#include <vector>

/// One temperature sensor of a helper answer.
struct TemperatureSensor {
    std::string id; ///< the helper's stable key for the sensor
    std::string label;
    double value = 0.0; ///< degrees Celsius

    bool operator==(const TemperatureSensor&) const = default;
};

/// One fan of a helper answer; speeds in RPM. Most chips report no minimum, maximum or
/// target: those stay empty rather than guessed.
struct FanInfo {
    long long id = 0;
    std::string key; ///< the helper's stable key, which fan commands name; empty: not controllable
    double actual = 0.0;
    std::optional<double> min;
    std::optional<double> max;
    std::optional<double> target;

    bool operator==(const FanInfo&) const = default;
};

/// One decoded helper answer with the chosen CPU and GPU temperatures (0 = unknown).
struct ThermalReadings {
    double cpuTemp = 0.0;
    double gpuTemp = 0.0;
    std::vector<TemperatureSensor> sensors;
    std::vector<FanInfo> fans;

    bool operator==(const ThermalReadings&) const = default;
};

/// The result of every failed read: zero temperatures, no sensors, no fans.
inline const ThermalReadings emptyThermalReadings{};
