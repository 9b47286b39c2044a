#include "../SamplingMonitors.h"

#include "LinuxDetailSource.h"
#include "LinuxMemorySource.h"
#include "ProcNetDevSource.h"
#include "ProcStatCpuSource.h"
#include "StatvfsVolumeSource.h"
#include "ThermalZoneStateSource.h"

#include <QString>
#include <QtGlobal>

SamplingMonitors SamplingMonitors::forThisMachine() {
    SamplingMonitors monitors;
    monitors.cpuMonitor = std::make_unique<CPUMonitor>(std::make_unique<ProcStatCpuSource>());
    monitors.memoryMonitor = std::make_unique<MemoryMonitor>(std::make_unique<LinuxMemorySource>());
    monitors.diskMonitor = std::make_unique<DiskMonitor>(std::make_unique<StatvfsVolumeSource>());
    monitors.networkMonitor =
        std::make_unique<NetworkMonitor>(std::make_unique<ProcNetDevSource>());
    // Where the set-user-ID copy lives may be moved, for a test desktop; only an absolute
    // path is taken, and a copy there still counts only if root owns it set-user-ID.
    const QString installed = qEnvironmentVariable("VORLUNE_INSTALLED_HELPER");
    monitors.thermalMonitor = installed.startsWith(QLatin1Char('/'))
                                  ? std::make_unique<ThermalMonitor>(installed.toStdString())
                                  : std::make_unique<ThermalMonitor>();
    monitors.thermalStateSource = std::make_unique<ThermalZoneStateSource>();
    monitors.detailSampler = std::make_unique<DetailSampler>(std::make_unique<LinuxDetailSource>());
    return monitors;
}
