#include "monitors/SystemMonitor.h"
#include "FakeSources.h"
#include "monitors/ThermalEstimate.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <cmath>
#include <future>
#include <thread>
#include <unistd.h>

namespace {

class CountingCpuSource : public CpuTickSource {
public:
    explicit CountingCpuSource(std::shared_future<void> gate = {}) : gate(std::move(gate)) {}
    std::optional<std::vector<CpuTicks>> readTicks() override {
        if (gate.valid())
            gate.wait();
        ++reads;
        return std::vector<CpuTicks>{{reads * 10ull, 0, reads * 10ull, 0}};
    }
    std::shared_future<void> gate;
    std::atomic<int> reads = 0;
};

SamplingMonitors scriptedMonitors(std::unique_ptr<CpuTickSource> cpu = nullptr) {
    SamplingMonitors monitors;
    monitors.cpuMonitor =
        std::make_unique<CPUMonitor>(cpu ? std::move(cpu) : std::make_unique<CountingCpuSource>());
    monitors.memoryMonitor = std::make_unique<MemoryMonitor>(
        std::make_unique<ScriptedMemorySource>(std::deque<std::optional<MemoryCounters>>{
            MemoryCounters{8ull << 30, 2ull << 30, 0, 0, 0}}));
    monitors.diskMonitor = std::make_unique<DiskMonitor>(std::make_unique<ScriptedVolumeSource>(
        std::deque<std::optional<VolumeCapacity>>{VolumeCapacity{100.0 * (1ull << 30), 0.0}}));
    monitors.networkMonitor =
        std::make_unique<NetworkMonitor>(std::make_unique<ScriptedInterfaceSource>(
            std::deque<std::optional<std::vector<InterfaceCounters>>>{std::nullopt}));
    monitors.thermalMonitor = std::make_unique<ThermalMonitor>();
    return monitors;
}

SystemSample sampleWith(double value) {
    SystemSample sample;
    sample.cpuUsage = value;
    sample.coreUsages = {value, value / 2};
    sample.memory = {value + 1, value + 10, 0, 0, 0, 0};
    sample.disk = {value + 2, value + 20};
    sample.network = {value + 3, value + 4};
    sample.thermal.cpuTemp = value + 5;
    sample.thermal.gpuTemp = value + 6;
    sample.thermal.sensors = {{"k", "CPU Die", value + 5}};
    sample.thermal.fans = {{0, 1000 + value, 0, 5000 + value, 0}};
    return sample;
}

// A copy of every published field, so each notice can be matched to the one field it announced.
struct Published {
    explicit Published(const SystemMonitor& m)
        : values{{"cpuUsage", {m.cpuUsage()}},
                 {"cpuHistory", m.cpuHistory()},
                 {"coreUsages", m.coreUsages()},
                 {"memoryUsed", {m.memoryUsed()}},
                 {"memoryTotal", {m.memoryTotal()}},
                 {"memoryHistory", m.memoryHistory()},
                 {"diskUsed", {m.diskUsed()}},
                 {"diskTotal", {m.diskTotal()}},
                 {"networkBytesIn", {m.networkBytesIn()}},
                 {"networkBytesOut", {m.networkBytesOut()}},
                 {"networkInHistory", m.networkInHistory()},
                 {"networkOutHistory", m.networkOutHistory()},
                 {"temperature", {m.temperature()}},
                 {"gpuTemperature", {m.gpuTemperature()}},
                 {"temperatureHistory", m.temperatureHistory()},
                 {"allSensors", {static_cast<double>(m.allSensors().size())}},
                 {"fanSpeed", {static_cast<double>(m.fanSpeed())}},
                 {"fanMaxSpeed", {static_cast<double>(m.fanMaxSpeed())}},
                 {"fans", {static_cast<double>(m.fans().size())}}} {}
    std::vector<std::pair<std::string, std::vector<double>>> values;
};

std::vector<std::string> changedFields(const Published& before, const Published& after) {
    std::vector<std::string> changed;
    for (std::size_t i = 0; i < before.values.size(); ++i)
        if (before.values[i].second != after.values[i].second)
            changed.push_back(before.values[i].first);
    return changed;
}

TEST(SystemMonitor, StartsWithTheInitialValues) {
    SystemMonitor monitor(scriptedMonitors(), false);
    for (const auto* history :
         {&monitor.cpuHistory(), &monitor.memoryHistory(), &monitor.networkInHistory(),
          &monitor.networkOutHistory(), &monitor.temperatureHistory()})
        EXPECT_EQ(*history, std::vector<double>(60, 0.0));
    EXPECT_TRUE(monitor.coreUsages().empty());
    EXPECT_TRUE(monitor.allSensors().empty());
    EXPECT_TRUE(monitor.fans().empty());
    EXPECT_EQ(monitor.fanSpeed(), 0);
    EXPECT_EQ(monitor.fanMaxSpeed(), 6000);
    EXPECT_EQ(monitor.memoryFraction(), 0.0);
    EXPECT_EQ(monitor.diskFraction(), 0.0);
}

TEST(SystemMonitor, AnnouncesEachChangeJustBeforeItInPublishingOrder) {
    SystemMonitor monitor(scriptedMonitors(), false);
    std::vector<Published> snapshots;
    QObject::connect(&monitor, &SystemMonitor::objectWillChange,
                     [&] { snapshots.emplace_back(monitor); });
    monitor.publish(sampleWith(0.5));
    snapshots.emplace_back(monitor);

    const std::vector<std::string> expected{
        "cpuUsage",           "coreUsages",        "cpuHistory",       "cpuHistory",
        "memoryUsed",         "memoryTotal",       "memoryHistory",    "memoryHistory",
        "diskUsed",           "diskTotal",         "networkBytesIn",   "networkBytesOut",
        "networkInHistory",   "networkOutHistory", "networkInHistory", "networkOutHistory",
        "temperature",        "gpuTemperature",    "allSensors",       "temperatureHistory",
        "temperatureHistory", "fanSpeed",          "fanMaxSpeed",      "fans"};
    ASSERT_EQ(snapshots.size(), expected.size() + 1) << "one notice per mutation: 24 per tick";
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(changedFields(snapshots[i], snapshots[i + 1]), std::vector{expected[i]})
            << "notice " << i;
}

TEST(SystemMonitor, PublishesTheSampleAndKeepsSixtyNewestSamples) {
    SystemMonitor monitor(scriptedMonitors(), false);
    for (int tick = 1; tick <= 61; ++tick)
        monitor.publish(sampleWith(tick));

    for (const auto* history :
         {&monitor.cpuHistory(), &monitor.memoryHistory(), &monitor.networkInHistory(),
          &monitor.networkOutHistory(), &monitor.temperatureHistory()})
        ASSERT_EQ(history->size(), 60u);
    EXPECT_EQ(monitor.cpuHistory().front(), 2.0) << "the oldest is the second tick's";
    EXPECT_EQ(monitor.cpuHistory().back(), 61.0);
    EXPECT_DOUBLE_EQ(monitor.memoryHistory().back(), 62.0 / 71.0);
    EXPECT_EQ(monitor.networkInHistory().back(), 64.0);
    EXPECT_EQ(monitor.networkOutHistory().back(), 65.0);
    EXPECT_EQ(monitor.temperatureHistory().back(), 66.0);
    EXPECT_EQ(monitor.gpuTemperature(), 67.0);
    EXPECT_EQ(monitor.fanSpeed(), 1061);
    EXPECT_EQ(monitor.fanMaxSpeed(), 5061);
    EXPECT_DOUBLE_EQ(monitor.diskFraction(), 63.0 / 81.0);
}

TEST(SystemMonitor, ZeroMemoryTotalAppendsZeroAndFractionsStayZero) {
    SystemMonitor monitor(scriptedMonitors(), false);
    SystemSample sample;
    sample.memory.used = 3.0;
    sample.disk.used = 5.0;
    monitor.publish(sample);
    EXPECT_EQ(monitor.memoryHistory().back(), 0.0);
    EXPECT_EQ(monitor.memoryFraction(), 0.0);
    EXPECT_EQ(monitor.diskFraction(), 0.0);
}

TEST(SystemMonitor, FanFiguresComeFromTheFirstFan) {
    struct Case {
        const char* name;
        std::vector<FanInfo> fans;
        long long speed;
        long long max;
    };
    const std::vector<Case> cases{
        {"no fans", {}, 0, 6000},
        {"truncated toward zero", {{0, 1234.9, 0, 5999.9, 0}, {1, 3000, 0, 7000, 0}}, 1234, 5999},
        {"maximum below 1 is raised to 1", {{0, 0, 0, 0.5, 0}}, 0, 1},
        {"maximum 0 is raised to 1", {{0, 10, 0, 0.0, 0}}, 10, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SystemMonitor monitor(scriptedMonitors(), false);
        SystemSample sample;
        sample.thermal.fans = c.fans;
        monitor.publish(sample);
        EXPECT_EQ(monitor.fanSpeed(), c.speed);
        EXPECT_EQ(monitor.fanMaxSpeed(), c.max);
        EXPECT_EQ(monitor.fans(), c.fans);
    }
}

TEST(SystemMonitorDeathTest, NonFiniteFanSpeedEndsTheProcess) {
    const auto publishNaNFan = [] {
        SystemMonitor monitor(scriptedMonitors(), false);
        SystemSample sample;
        sample.thermal.fans.push_back(FanInfo{0, std::nan(""), 0, 6000, 0});
        monitor.publish(sample);
    };
    EXPECT_DEATH(publishNaNFan(), "");
}

TEST(SystemMonitor, EstimateWithoutHelperIsPublishedAsTheTemperature) {
    SystemMonitor monitor(scriptedMonitors(), false);
    SystemSample sample;
    sample.thermal = estimatedThermalReadings(ThermalState::serious);
    monitor.publish(sample);
    EXPECT_EQ(monitor.temperature(), 80.0);
    EXPECT_EQ(monitor.gpuTemperature(), 0.0);
    EXPECT_TRUE(monitor.allSensors().empty());
    EXPECT_TRUE(monitor.fans().empty());
    EXPECT_EQ(monitor.temperatureHistory().back(), 80.0);
}

bool waitFor(const std::function<bool()>& done, int milliseconds) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (done())
            loop.quit();
    });
    poll.start(10);
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    return done();
}

TEST(SystemMonitor, SamplesThisMachineOnStartAndEveryTwoSeconds) {
    SystemMonitor monitor;
    int samples = 0;
    QObject::connect(&monitor, &SystemMonitor::sampled, [&] { ++samples; });
    ASSERT_TRUE(waitFor([&] { return samples >= 1; }, 5000)) << "the first sample comes at once";
    EXPECT_EQ(monitor.coreUsages().size(), static_cast<std::size_t>(sysconf(_SC_NPROCESSORS_CONF)));
    EXPECT_GT(monitor.memoryTotal(), 0.0);
    EXPECT_GT(monitor.memoryUsed(), 0.0);
    EXPECT_GT(monitor.diskTotal(), 0.0);
    EXPECT_GE(monitor.cpuUsage(), 0.0);
    EXPECT_LE(monitor.cpuUsage(), 1.0);
    ASSERT_TRUE(waitFor([&] { return samples >= 2; }, 5000)) << "the timer keeps sampling";
    EXPECT_EQ(monitor.cpuHistory().size(), 60u);
}

TEST(SystemMonitor, TickWhileAJobRunsIsSkippedNotQueued) {
    std::promise<void> release;
    auto cpu = std::make_unique<CountingCpuSource>(release.get_future().share());
    auto* cpuSource = cpu.get();
    SystemMonitor monitor(scriptedMonitors(std::move(cpu)), false);
    int samples = 0;
    QObject::connect(&monitor, &SystemMonitor::sampled, [&] { ++samples; });

    monitor.updateStats();
    monitor.updateStats();
    monitor.updateStats();
    release.set_value();
    ASSERT_TRUE(waitFor([&] { return samples >= 1; }, 5000));
    waitFor([] { return false; }, 200);
    EXPECT_EQ(samples, 1);
    EXPECT_EQ(cpuSource->reads, 2) << "one job: one total and one per-core read";

    monitor.updateStats();
    ASSERT_TRUE(waitFor([&] { return samples >= 2; }, 5000)) << "the next tick runs again";
}

TEST(SystemMonitor, TeardownWithAJobInFlightDropsItsResult) {
    std::promise<void> release;
    auto cpu = std::make_unique<CountingCpuSource>(release.get_future().share());
    int samples = 0;
    {
        SystemMonitor monitor(scriptedMonitors(std::move(cpu)), false);
        QObject::connect(&monitor, &SystemMonitor::sampled, [&] { ++samples; });
        monitor.updateStats();
        std::thread releaser([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            release.set_value();
        });
        releaser.detach();
    }
    waitFor([] { return false; }, 200);
    EXPECT_EQ(samples, 0);
}

} // namespace
