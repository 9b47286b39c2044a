#pragma once

#include "CPUMonitor.h"
#include "DetailSampler.h"
#include "DiskMonitor.h"
#include "MemoryMonitor.h"
#include "NetworkMonitor.h"
#include "ThermalMonitor.h"
#include "ThermalState.h"

#include <memory>

/// The five source monitors the system monitor owns, plus the thermal-state
/// source used when no helper exists.
struct SamplingMonitors {
    std::unique_ptr<CPUMonitor> cpuMonitor;
    std::unique_ptr<MemoryMonitor> memoryMonitor;
    std::unique_ptr<DiskMonitor> diskMonitor;
    std::unique_ptr<NetworkMonitor> networkMonitor;
    std::unique_ptr<ThermalMonitor> thermalMonitor;
    std::unique_ptr<ThermalStateSource> thermalStateSource;
    /// What only open detail popovers show; none when null.
    std::unique_ptr<DetailSampler> detailSampler = nullptr;

    /// This machine's sources, created in the order CPU, memory, disk, network, thermal.
    static SamplingMonitors forThisMachine();
};
