#include "monitors/SystemMonitor.h"
#include "FakeSources.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <future>
#include <unistd.h>

namespace {

struct SeriousState : ThermalStateSource {
    std::optional<ThermalState> thermalState() const override { return ThermalState::serious; }
};

// Holds every read until the test opens the gate.
struct GatedCpu : CpuTickSource {
    std::shared_future<void> gate;
    std::atomic<int> reads = 0;
    std::vector<CpuTicks> ticks;
    const std::vector<CpuTicks>* readTicks() override {
        gate.wait();
        ticks = {{0, 0, 10ull * ++reads, 0}};
        return &ticks;
    }
};

// Every source reads well on two ticks (the first is the baseline), then fails. The
// clock steps 2 s per network read.
SamplingMonitors fakeMonitors(std::unique_ptr<CpuTickSource> cpu = nullptr) {
    const std::vector<CpuTicks> boot(2), later{{30, 10, 60, 0}, {10, 0, 90, 0}};
    const MemoryCounters memory{8ull << 30, 2ull << 30, 0, 0, 0};
    const VolumeCapacity disk{double(100ull << 30), double(25ull << 30), double(20ull << 30)};
    const Interfaces eth0{{"eth0", 0, 0}}, eth0Later{{"eth0", 4000, 2000}};
    SamplingMonitors m;
    m.cpuMonitor = std::make_unique<CPUMonitor>(
        cpu ? std::move(cpu) : std::make_unique<ScriptedCpu>(CpuScript{{boot, later, {}}}));
    m.memoryMonitor = std::make_unique<MemoryMonitor>(
        std::make_unique<ScriptedMemory>(Script<MemoryCounters>{{memory, memory, {}}}));
    m.diskMonitor = std::make_unique<DiskMonitor>(
        std::make_unique<ScriptedVolume>(Script<VolumeCapacity>{{disk, disk, {}}}));
    m.networkMonitor = std::make_unique<NetworkMonitor>(
        std::make_unique<ScriptedInterfaces>(Script<Interfaces>{{eth0, eth0Later, {}}}),
        [now = 0.0]() mutable { return now += 2; });
    m.thermalMonitor = std::make_unique<ThermalMonitor>();
    m.thermalStateSource = std::make_unique<SeriousState>();
    return m;
}

void tick(SystemMonitor& monitor) {
    QSignalSpy sampled(&monitor, &SystemMonitor::sampled);
    monitor.updateStats();
    ASSERT_TRUE(sampled.wait(5000));
}

TEST(SystemMonitor, ATickPublishesEverySourceAndAFailedReadPublishesZeros) {
    SystemMonitor monitor(fakeMonitors(), false);
    for (int i = 0; i < 2; ++i)
        ASSERT_NO_FATAL_FAILURE(tick(monitor));
    EXPECT_DOUBLE_EQ(monitor.cpuUsage(), 0.25) << "50 busy of 200 ticks";
    EXPECT_EQ(monitor.coreUsages(), (std::vector<double>{0.4, 0.1}));
    EXPECT_DOUBLE_EQ(monitor.memoryHistory().back(), 0.25);
    EXPECT_DOUBLE_EQ(monitor.diskUsed(), 75.0);
    EXPECT_DOUBLE_EQ(monitor.diskAvailable(), 20.0);
    EXPECT_DOUBLE_EQ(monitor.networkBytesIn(), 2000.0);
    EXPECT_DOUBLE_EQ(monitor.networkOutHistory().back(), 1000.0);
    // With the build tree's helper present the temperature is this machine's (the thermal
    // suite covers that); without one it is the thermal state's estimate.
    if (!monitor.thermalMonitor().helperPath()) {
        EXPECT_EQ(monitor.temperatureHistory().back(), 80.0);
    }

    ASSERT_NO_FATAL_FAILURE(tick(monitor));
    EXPECT_EQ(monitor.cpuHistory().back(), 0.0);
    EXPECT_TRUE(monitor.coreUsages().empty());
    EXPECT_EQ(monitor.memoryTotal(), 0.0);
    EXPECT_EQ(monitor.memoryHistory().back(), 0.0) << "no division by a zero total";
    EXPECT_EQ(monitor.diskFraction(), 0.0);
    EXPECT_EQ(monitor.networkInHistory().back(), 0.0);
    EXPECT_EQ(monitor.cpuHistory().size(), 60u) << "the oldest samples make room";
}

TEST(SystemMonitor, FanFiguresComeFromTheFirstFan) {
    const std::tuple<std::vector<FanInfo>, long long, long long> cases[] = {
        {{}, 0, 6000},
        {{{0, "", 1234.9, 0, 5999.9, 0}, {1, "", 3000, 0, 7000, 0}}, 1234, 5999}, // truncated
        {{{0, "", 10, 0, 0.5, 0}}, 10, 1},    // a maximum below 1 is raised to 1
        {{{0, "", 900, {}, {}, {}}}, 900, 0}, // no maximum reported: none made up
    };
    SystemMonitor monitor(fakeMonitors(), false);
    SystemSample sample;
    for (const auto& [fans, speed, max] : cases) {
        sample.thermal.fans = fans;
        monitor.publish(sample);
        EXPECT_EQ(std::pair(monitor.fanSpeed(), monitor.fanMaxSpeed()), std::pair(speed, max));
    }
    sample.thermal.fans = {{0, "", std::nan(""), 0, 6000, 0}};
    EXPECT_DEATH(monitor.publish(sample), "cannot be converted");
}

TEST(SystemMonitor, TickWhileAJobRunsIsSkippedNotQueued) {
    std::promise<void> release;
    auto cpu = std::make_unique<GatedCpu>();
    cpu->gate = release.get_future().share();
    auto* source = cpu.get();
    SystemMonitor monitor(fakeMonitors(std::move(cpu)), false);
    QSignalSpy sampled(&monitor, &SystemMonitor::sampled);
    for (int i = 0; i < 3; ++i)
        monitor.updateStats();
    release.set_value();
    ASSERT_TRUE(sampled.wait(5000));
    QTest::qWait(200);
    EXPECT_EQ(sampled.count(), 1);
    EXPECT_EQ(source->reads, 1) << "one job, one read for the total and each core";
    monitor.updateStats();
    EXPECT_TRUE(sampled.wait(5000)) << "the next tick runs again";
}

// This machine's /proc through the real readers, sampled at once and then by the timer.
TEST(SystemMonitor, SamplesThisMachineOnStartAndThenEveryTwoSeconds) {
    SystemMonitor monitor;
    QSignalSpy sampled(&monitor, &SystemMonitor::sampled);
    ASSERT_TRUE(sampled.wait(5000));
    ASSERT_TRUE(sampled.wait(5000));
    EXPECT_EQ(long(monitor.coreUsages().size()), sysconf(_SC_NPROCESSORS_CONF));
    std::vector<double> usages = monitor.coreUsages();
    usages.push_back(monitor.cpuUsage());
    for (double usage : usages)
        EXPECT_TRUE(usage >= 0.0 && usage <= 1.0) << usage;
    EXPECT_TRUE(monitor.memoryUsed() > 0 && monitor.memoryUsed() <= monitor.memoryTotal());
    EXPECT_TRUE(monitor.diskUsed() > 0 && monitor.diskUsed() <= monitor.diskTotal());
}

// Counts its reads; each finds one process, a limit and one file system.
struct CountedDetails : DetailSource {
    std::atomic<int> processReads = 0, volumeReads = 0;
    std::vector<ProcessReading> readProcesses(bool) override {
        ++processReads;
        return {{1, "init", 0.0, 1, 4096}};
    }
    std::optional<std::uint64_t> readMemoryLimit() override { return 1 << 30; }
    std::vector<MountedVolume> readVolumes() override {
        ++volumeReads;
        return {{"/", 1, 2}};
    }
};

// Nothing only a detail popover shows is read while none watches it; a watch reads its
// figures at once and then on every tick, until it ends.
TEST(SystemMonitor, DetailFiguresAreReadOnlyWhileWatched) {
    auto details = std::make_unique<CountedDetails>();
    const CountedDetails& counted = *details;
    SamplingMonitors monitors = fakeMonitors();
    monitors.detailSampler = std::make_unique<DetailSampler>(std::move(details));
    SystemMonitor monitor(std::move(monitors), false);
    ASSERT_NO_FATAL_FAILURE(tick(monitor));
    EXPECT_EQ(counted.processReads + counted.volumeReads, 0);
    {
        const DetailWatch watch =
            monitor.watchDetails(DetailFigure::largestProcesses | DetailFigure::memoryLimit);
        ASSERT_TRUE(QTest::qWaitFor([&] { return monitor.memoryLimit().has_value(); }));
        EXPECT_EQ(monitor.largestProcesses(), (std::vector<ProcessFigure>{{"init", 4096}}));
        ASSERT_NO_FATAL_FAILURE(tick(monitor));
        EXPECT_EQ(counted.processReads, 2);
    }
    ASSERT_NO_FATAL_FAILURE(tick(monitor));
    EXPECT_EQ(counted.processReads, 2);
    EXPECT_EQ(counted.volumeReads, 0);
}

} // namespace
