#include "FakeSources.h"
#include "monitors/BusiestCore.h"
#include "monitors/CPUMonitor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Processors as {user, system, idle, nice}.
std::vector<CpuTicks> cpus(std::initializer_list<CpuTicks> ticks) {
    return ticks;
}

TEST(CpuMonitor, UsageIsTheBusyShareOfEachInterval) {
    struct Case {
        const char* name;
        CpuScript reads;
        std::vector<double> totals;               // one getTotalUsage() per read
        std::vector<std::vector<double>> perCore; // one getPerCoreUsage() per read
    };
    const Case cases[] = {
        {"the first read averages since boot, then 40 busy of 100 with nice counted as busy",
         {{cpus({{100, 100, 200, 0}}), cpus({{120, 110, 260, 10}})}},
         {0.5, 0.4},
         {{0.5}, {0.4}}},
        {"a failed read gives 0, the next covers the whole span; unchanged counters give 0",
         {{cpus({{10, 10, 80, 0}}), std::nullopt, cpus({{40, 20, 140, 0}}),
           cpus({{40, 20, 140, 0}})}},
         {0.2, 0, 0.4, 0},
         {{0.2}, {}, {0.4}, {0}}},
        {"a processor coming online: new ticks for the total, every core restarts",
         {{cpus({{50, 0, 50, 0}}), cpus({{50, 0, 50, 0}, {25, 0, 75, 0}})}},
         {0.5, 0.25},
         {{0.5}, {0.5, 0.25}}},
        {"per core, counters going backwards wrap to a share of 1",
         {{cpus({{100, 0, 100, 0}}), cpus({{90, 0, 100, 0}})}},
         {0.5},
         {{0.5}, {1.0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CPUMonitor total(std::make_unique<ScriptedCpu>(c.reads));
        for (double expected : c.totals)
            EXPECT_DOUBLE_EQ(total.getTotalUsage(), expected);
        CPUMonitor perCore(std::make_unique<ScriptedCpu>(c.reads));
        for (const auto& expected : c.perCore)
            EXPECT_EQ(perCore.getPerCoreUsage(), expected);
    }
}

TEST(BusiestCore, TheFirstOfTheHighestUsagesThatAreNumbers) {
    const double nan = std::nan("");
    const std::pair<std::vector<double>, std::optional<BusiestCore>> cases[] = {
        {{}, std::nullopt},
        {{nan, nan}, std::nullopt},
        {{0.2, 0.9, 0.9, 0.1}, BusiestCore{1, 0.9}},
        {{nan, 0.0, 0.3}, BusiestCore{2, 0.3}},
    };
    for (const auto& [usages, busiest] : cases)
        EXPECT_EQ(findBusiestCore(usages), busiest);
}

// The machine total is what users watch: a broken source must not show as load.
TEST(CpuMonitorDeathTest, BrokenCountersEndTheProcess) {
    const std::pair<CpuScript, const char*> cpu[] = {
        {{{cpus({{100, 0, 100, 0}}), cpus({{90, 0, 100, 0}})}}, "went backwards"},
        {{{cpus({{UINT64_MAX, 1, 0, 0}})}}, "overflowed"},
        {{{cpus({{100, 0, 100, 0}}), cpus({{90, 0, 150, 0}})}}, "idle ticks advanced"},
    };
    for (const auto& [reads, message] : cpu) {
        CPUMonitor monitor(std::make_unique<ScriptedCpu>(reads));
        EXPECT_DEATH(
            {
                monitor.getTotalUsage();
                monitor.getTotalUsage();
            },
            message);
    }
}

Interfaces ethernet(std::uint64_t received, std::uint64_t sent) {
    return {{"eth0", received, sent}};
}

// One byte received on each link the source leaves out, one sent on each that counts.
Interfaces mixedLinks() {
    Interfaces links;
    for (const char* name : {"lo", "docker0", "veth1a"})
        links.push_back({name, 1, 0, false});
    for (const char* name : {"enp3s0", "lan0", "usb0", "ib0", "bond0"})
        links.push_back({name, 0, 1, true});
    return links;
}

TEST(NetworkMonitor, ThroughputIsTheGrowthOfTheCountedInterfacesOverTime) {
    struct Step {
        double secondsLater; // the clock moves by this before the read
        std::optional<Interfaces> read;
        NetworkThroughput expected;
    };
    const std::pair<const char*, std::vector<Step>> cases[] = {
        {"bytes over elapsed time; the first read is 0",
         {{0, ethernet(5'000'000'000, 1000), {0, 0}},
          {2, ethernet(5'002'000'000, 501'000), {1'000'000, 250'000}},
          {0.5, ethernet(5'002'000'000, 501'000), {0, 0}}}},
        {"an interface vanishing drops the sum: no traffic, and the new baseline",
         {{0, Interfaces{{"eth0", 10'000, 1000}, {"wlan0", 5000, 0}}, {0, 0}},
          {2, ethernet(12'000, 3000), {0, 1000}},
          {2, ethernet(14'000, 3000), {1000, 0}}}},
        {"a counter wrapping past 2^64 reads as no traffic",
         {{0, ethernet(UINT64_MAX - 100, 0), {0, 0}},
          {2, ethernet(50, 0), {0, 0}},
          {2, ethernet(2050, 0), {1000, 0}}}},
        {"a clock that stalls or runs back keeps the baseline",
         {{0, ethernet(0, 0), {0, 0}},
          {0, ethernet(1000, 1000), {0, 0}},
          {-5, ethernet(2000, 2000), {0, 0}},
          {9, ethernet(4000, 4000), {1000, 1000}}}},
        {"a failed read sums to 0; the next read counts from there",
         {{0, ethernet(1000, 1000), {0, 0}},
          {2, std::nullopt, {0, 0}},
          {2, ethernet(3000, 5000), {1500, 2500}}}},
        {"only the links the source counts",
         {{0, Interfaces{}, {0, 0}}, {1, mixedLinks(), {0, 5}}}},
    };
    for (const auto& [name, steps] : cases) {
        SCOPED_TRACE(name);
        Script<Interfaces> script;
        for (const Step& step : steps)
            script.reads.push_back(step.read);
        double now = 100.0;
        NetworkMonitor monitor(std::make_unique<ScriptedInterfaces>(script), [&] { return now; });
        for (const Step& step : steps) {
            now += step.secondsLater;
            EXPECT_EQ(monitor.getThroughput(), step.expected) << "at t=" << now;
        }
    }
}

TEST(MemoryAndDiskMonitors, ReportGiBAndAllZerosForAFailedRead) {
    const MemoryCounters counters{16ull << 30, 4ull << 30, 3ull << 30, 1ull << 30, 512ull << 20};
    MemoryMonitor memory(std::make_unique<ScriptedMemory>(Script<MemoryCounters>{{counters, {}}}));
    const MemoryUsage usage = memory.getMemoryUsage();
    EXPECT_DOUBLE_EQ(usage.total, 16.0);
    EXPECT_DOUBLE_EQ(usage.used, 5.5) << "active + wired + compressed; inactive can be reclaimed";
    EXPECT_EQ(memory.getMemoryUsage(), MemoryUsage{}) << "total too, so no share is shown";

    DiskMonitor disk(
        std::make_unique<ScriptedVolume>(Script<VolumeCapacity>{{{{500e9, 100e9, 75e9}}, {}}}));
    // The root reserve (free but not available) is not used, as df counts it.
    EXPECT_EQ(disk.getDiskUsage(),
              (DiskUsage{400e9 / (1 << 30), 500e9 / (1 << 30), 75e9 / (1 << 30)}));
    EXPECT_EQ(disk.getDiskUsage(), DiskUsage{});
}

} // namespace
