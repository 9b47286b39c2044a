#pragma once

#include "SensorCollector.h"
#include "SysfsTree.h"

#include <chrono>
#include <string>
#include <vector>

/// The serving mode's readings: the chips found by one scan, with every value file
/// kept open and read again from its start on each request. It scans again when a chip
/// comes or goes under /sys/class/hwmon, when a kept file can no longer be read or
/// holds no valid value, when a GPU starts to sleep, and at least once a minute; so
/// each answer is what a fresh "--all" would give, give or take a minute for a sensor
/// that starts or stops reporting. NVIDIA GPUs, read through NVML, are asked anew each time.
class ReadingsCache {
public:
    explicit ReadingsCache(const SysfsTree& tree);
    ~ReadingsCache();
    ReadingsCache(const ReadingsCache&) = delete;
    ReadingsCache& operator=(const ReadingsCache&) = delete;

    SensorReadings read();
    /// How many scans the cache has made; a scan per request would defeat it.
    int scanCount() const { return scans_; }

private:
    struct KeptValue {
        int fd = -1;
        long long* value; // in scan_
        long long lowest, highest;
    };
    struct KeptOptional {
        int fd = -1;
        std::optional<long long>* value; // in scan_
    };

    void rescan();
    bool refresh();
    void closeAll();
    std::vector<std::string> hwmonEntries() const;

    const SysfsTree& tree_;
    SensorScan scan_;
    std::vector<KeptValue> values_;
    std::vector<KeptOptional> targets_;
    std::vector<int> gpuStatuses_;
    std::vector<std::string> entries_;
    std::chrono::steady_clock::time_point scannedAt_;
    int scans_ = 0;
};
