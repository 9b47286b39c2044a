#include "../SamplingMonitors.h"

#include "LinuxDetailSource.h"
#include "LinuxMemorySource.h"
#include "ProcNetDevSource.h"
#include "ProcStatCpuSource.h"
#include "StatvfsVolumeSource.h"
#include "ThermalZoneStateSource.h"

SamplingMonitors SamplingMonitors::forThisMachine() {
    SamplingMonitors monitors;
    monitors.cpuMonitor = std::make_unique<CPUMonitor>(std::make_unique<ProcStatCpuSource>());
    monitors.memoryMonitor = std::make_unique<MemoryMonitor>(std::make_unique<LinuxMemorySource>());
    monitors.diskMonitor = std::make_unique<DiskMonitor>(std::make_unique<StatvfsVolumeSource>());
    monitors.networkMonitor =
        std::make_unique<NetworkMonitor>(std::make_unique<ProcNetDevSource>());
    monitors.thermalMonitor = std::make_unique<ThermalMonitor>();
    monitors.thermalStateSource = std::make_unique<ThermalZoneStateSource>();
    monitors.detailSampler = std::make_unique<DetailSampler>(std::make_unique<LinuxDetailSource>());
    return monitors;
}
