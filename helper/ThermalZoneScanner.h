#pragma once

#include "SysfsTree.h"

#include <optional>
#include <string>
#include <vector>

struct ThermalZone {
    int number = 0; ///< N of thermal_zoneN
    std::string type;
    long long milliCelsius = 0;
    std::optional<long long> critMilliCelsius; ///< the "critical" trip point
    std::string tempPath;
};

/// Every readable zone under /sys/class/thermal, by zone number.
std::vector<ThermalZone> scanThermalZones(const SysfsTree& tree, bool readCriticalTrips);
