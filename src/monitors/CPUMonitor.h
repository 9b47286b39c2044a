#pragma once

#include "CpuTicks.h"

#include <cstdint>
#include <memory>
#include <vector>

/// The machine's and each processor's busy fraction from one read of the counters.
struct CpuUsage {
    double total = 0.0;
    std::vector<double> perCore;
};

/// Turns cumulative per-processor tick counters into busy fractions (0.0 to 1.0).
class CPUMonitor {
public:
    explicit CPUMonitor(std::unique_ptr<CpuTickSource> source);

    /// Both fractions from one read, each since the previous read that computed it: what
    /// a tick takes, as the kernel writes all of /proc/stat, interrupts too, for each read.
    CpuUsage getUsage();
    /// Busy fraction of all processors together since the previous call.
    double getTotalUsage();
    /// Busy fraction of each processor since the previous call of this operation.
    std::vector<double> getPerCoreUsage();

private:
    double totalUsage(const std::vector<CpuTicks>& ticks);
    std::vector<double> perCoreUsage(const std::vector<CpuTicks>& ticks);

    std::unique_ptr<CpuTickSource> source;
    std::vector<std::uint64_t> previousTotalTicks;
    std::vector<std::uint64_t> previousIdleTicks;
    std::uint64_t previousSystemTotal = 0;
    std::uint64_t previousSystemIdle = 0;
};
