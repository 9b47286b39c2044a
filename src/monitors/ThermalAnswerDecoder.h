#pragma once

#include "ThermalReadings.h"

#include <string_view>

/// Decodes what `smc_helper --all` printed: one JSON object with "temperatures"
/// and "fans" arrays. Chooses the CPU and GPU temperatures from the sensor labels.
/// Bytes that are not a JSON object give `emptyThermalReadings`.
ThermalReadings decodeThermalAnswer(std::string_view answer);

/// The CPU and GPU temperatures chosen from `sensors`, visited in order; 0 = unknown.
/// `decodeThermalAnswer` fills `cpuTemp` and `gpuTemp` with these.
struct ChosenTemperatures {
    double cpuTemp = 0.0;
    double gpuTemp = 0.0;
};
ChosenTemperatures chooseTemperatures(const std::vector<TemperatureSensor>& sensors);
