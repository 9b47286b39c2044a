#pragma once

#include "CpuTicks.h"

#include <cstdint>
#include <memory>
#include <vector>

/// Turns cumulative per-processor tick counters into busy fractions (0.0 to 1.0).
class CPUMonitor {
public:
    explicit CPUMonitor(std::unique_ptr<CpuTickSource> source);

    /// Busy fraction of all processors together since the previous call.
    double getTotalUsage();
    /// Busy fraction of each processor since the previous call of this operation.
    std::vector<double> getPerCoreUsage();

private:
    std::unique_ptr<CpuTickSource> source;
    std::vector<std::uint64_t> previousTotalTicks;
    std::vector<std::uint64_t> previousIdleTicks;
    std::uint64_t previousSystemTotal = 0;
    std::uint64_t previousSystemIdle = 0;
};
