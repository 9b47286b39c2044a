#pragma once

#include "monitors/ThermalReadings.h"

#include <vector>

/// Temperature sensors sorted into the detail popovers' lists, each in reading order.
struct SensorGroups {
    std::vector<TemperatureSensor> cpu;   ///< labels containing "CPU"
    std::vector<TemperatureSensor> gpu;   ///< labels containing "GPU" but not "CPU"
    std::vector<TemperatureSensor> other; ///< everything else
};

SensorGroups groupSensors(const std::vector<TemperatureSensor>& sensors);
