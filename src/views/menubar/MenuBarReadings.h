#pragma once

#include "monitors/BusiestCore.h"

#include <cstdint>
#include <optional>
#include <vector>

/// The published readings one tray item is drawn from, copied out of the sampler.
/// Usage values are fractions 0...1, sizes GiB, rates bytes per second, temperatures °C,
/// fan speeds RPM. Histories are oldest first.
struct MenuBarReadings {
    double cpuUsage = 0.0;
    std::vector<double> cpuHistory;
    std::optional<BusiestCore> busiestCore;
    double memoryUsed = 0.0;
    double memoryTotal = 0.0;
    std::vector<double> memoryHistory;
    double diskUsed = 0.0;
    double diskTotal = 0.0;
    double networkBytesIn = 0.0;
    double networkBytesOut = 0.0;
    std::vector<double> networkInHistory;
    std::vector<double> networkOutHistory;
    double temperature = 0.0;
    double gpuTemperature = 0.0;
    std::vector<double> temperatureHistory;
    std::int64_t fanSpeed = 0;
    std::int64_t fanMaxSpeed = 6000;

    /// diskUsed ÷ diskTotal, or 0 when diskTotal is not above 0.
    double diskFraction() const { return diskTotal > 0.0 ? diskUsed / diskTotal : 0.0; }
};
