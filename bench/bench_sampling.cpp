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

#include <filesystem>
#include <vector>

namespace {

// The floor: the files the job reads, held open and read from the start as the job does
// (/proc/stat, /proc/meminfo, each zram device's mm_stat, /proc/net/dev) and one statvfs,
// none of it parsed.
void BM_BareReads(benchmark::State& state) {
    std::vector<OpenTextFile> files;
    files.emplace_back("/proc/stat");
    files.emplace_back("/proc/meminfo");
    for (const auto& device : std::filesystem::directory_iterator("/sys/block"))
        if (device.path().filename().string().starts_with("zram"))
            files.emplace_back(device.path().string() + "/mm_stat");
    files.emplace_back("/proc/net/dev");
    std::string buffer;
    for (auto _ : state) {
        for (OpenTextFile& file : files) {
            file.read(buffer);
            benchmark::DoNotOptimize(buffer.data());
        }
        struct statvfs info {};
        benchmark::DoNotOptimize(statvfs("/", &info));
    }
}

void BM_SamplingJobWithoutThermal(benchmark::State& state) {
    CPUMonitor cpu(std::make_unique<ProcStatCpuSource>());
    MemoryMonitor memory(std::make_unique<LinuxMemorySource>());
    DiskMonitor disk(std::make_unique<StatvfsVolumeSource>());
    NetworkMonitor network(std::make_unique<ProcNetDevSource>());
    auto tick = [&] {
        benchmark::DoNotOptimize(cpu.getUsage());
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
