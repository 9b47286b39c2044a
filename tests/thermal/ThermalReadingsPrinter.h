#pragma once

#include "monitors/ThermalReadings.h"

#include <ostream>

// Readable failure messages for whole-record comparisons.
inline void PrintTo(const ThermalReadings& readings, std::ostream* out) {
    *out << "{cpu " << readings.cpuTemp << ", gpu " << readings.gpuTemp << ", sensors [";
    for (const TemperatureSensor& sensor : readings.sensors)
        *out << " (" << sensor.id << ", " << sensor.label << ", " << sensor.value << ")";
    *out << " ], fans [";
    for (const FanInfo& fan : readings.fans)
        *out << " (" << fan.id << ": " << fan.actual << " " << fan.min << "-" << fan.max << " -> "
             << fan.target << ")";
    *out << " ]}";
}
