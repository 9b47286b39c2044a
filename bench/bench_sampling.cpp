// One sampling job without the thermal step, beside the bare reads it is built on.
#include "AllocationCount.h"
#include "monitors/CPUMonitor.h"
#include "monitors/DiskMonitor.h"
#include "monitors/MemoryMonitor.h"
#include "monitors/NetworkMonitor.h"
#include "monitors/linux/LinuxMemorySource.h"
#include "monitors/linux/ProcNetDevSource.h"
#include "monitors/linux/ProcStatCpuSource.h"
#include "monitors/linux/StatvfsVolumeSource.h"
#include "monitors/linux/TextFile.h"

#include <benchmark/benchmark.h>

#include <sys/statvfs.h>

namespace {

// The floor: /proc/stat twice, /proc/meminfo, statvfs and /proc/net/dev, read and not parsed.
void BM_BareReads(benchmark::State& state) {
    std::string buffer;
    for (auto _ : state) {
        readTextFile("/proc/stat", buffer);
        benchmark::DoNotOptimize(buffer.data());
        readTextFile("/proc/stat", buffer);
        benchmark::DoNotOptimize(buffer.data());
        readTextFile("/proc/meminfo", buffer);
        benchmark::DoNotOptimize(buffer.data());
        struct statvfs info {};
        benchmark::DoNotOptimize(statvfs("/", &info));
        readTextFile("/proc/net/dev", buffer);
        benchmark::DoNotOptimize(buffer.data());
    }
}

void BM_SamplingJobWithoutThermal(benchmark::State& state) {
    CPUMonitor cpu(std::make_unique<ProcStatCpuSource>());
    MemoryMonitor memory(std::make_unique<LinuxMemorySource>());
    DiskMonitor disk(std::make_unique<StatvfsVolumeSource>());
    NetworkMonitor network(std::make_unique<ProcNetDevSource>());
    auto tick = [&] {
        benchmark::DoNotOptimize(cpu.getTotalUsage());
        benchmark::DoNotOptimize(cpu.getPerCoreUsage());
        benchmark::DoNotOptimize(memory.getMemoryUsage());
        benchmark::DoNotOptimize(disk.getDiskUsage());
        benchmark::DoNotOptimize(network.getThroughput());
    };
    for (int warm = 0; warm < 3; ++warm)
        tick();
    measureAllocations(state, "allocs_per_tick", tick);
}

} // namespace

BENCHMARK(BM_BareReads)->Repetitions(15)->ReportAggregatesOnly(true);
BENCHMARK(BM_SamplingJobWithoutThermal)->Repetitions(15)->ReportAggregatesOnly(true);
BENCHMARK_MAIN();
