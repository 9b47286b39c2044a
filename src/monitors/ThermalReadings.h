#pragma once

#include <string>
#include <vector>

/// One temperature sensor of a helper answer.
struct TemperatureSensor {
    std::string id; ///< the helper's stable key for the sensor
    std::string label;
    double value = 0.0; ///< degrees Celsius

    bool operator==(const TemperatureSensor&) const = default;
};

/// One fan of a helper answer; speeds in RPM.
struct FanInfo {
    long long id = 0;
    double actual = 0.0;
    double min = 0.0;
    double max = 6000.0;
    double target = 0.0;

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
