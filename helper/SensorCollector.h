#pragma once

#include "HwmonScanner.h"
#include "SysfsTree.h"
#include "ThermalZoneScanner.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

struct TemperatureReading {
    std::string key; ///< stable identity: hwmon/<chip>/<device>/tempN, tz/<type>/<n>, nvml/<bus>
    std::string label;
    long long milliCelsius = 0;
    std::optional<long long> critMilliCelsius;
    std::string inputPath; ///< empty for NVML readings and unless paths were asked for
};

struct FanReading {
    int id = 0;      ///< position in the stable fan order, the same in every mode
    std::string key; ///< stable identity the daemon's commands use: hwmon/<chip>/<device>/fanN
    long long rpm = 0;
    std::optional<long long> minRpm; ///< each absent when the chip does not report it
    std::optional<long long> maxRpm;
    std::optional<long long> targetRpm;
    FanControlPaths control;
};

struct SensorReadings {
    std::vector<TemperatureReading> temperatures;
    std::vector<FanReading> fans;
};

struct CollectOptions {
    bool includeNvml = false;
    bool readCriticalTemperatures = false;
    /// The paths the daemon opens later (inputPath, fan control); an answer needs none.
    bool recordPaths = false;
};

/// The chips and zones found, in their stable order (chips by kind, GPUs last, then by
/// device path), with the values read while looking.
struct SensorScan {
    std::vector<HwmonChip> chips;
    std::vector<ThermalZone> zones;
    std::set<std::string> mirroredChipNames; ///< chips dropped as a zone's mirror
};

SensorScan scanSensors(const SysfsTree& tree, const CollectOptions& options);

/// The answer for a scan's values: labels, CPU stand-ins, NVML GPUs and the limits.
SensorReadings assembleSensors(const SensorScan& scan, const SysfsTree& tree,
                               const CollectOptions& options);

/// Every temperature and fan of the machine, labelled and in their stable order: chips
/// by kind (GPUs last), then by device path, then by attribute number.
SensorReadings collectSensors(const SysfsTree& tree, const CollectOptions& options);
