#include "monitors/CPUMonitor.h"
#include "FakeSources.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

CpuTicks ticks(std::uint64_t user, std::uint64_t system, std::uint64_t idle, std::uint64_t nice) {
    return {user, system, idle, nice};
}

CPUMonitor monitorReading(std::deque<std::optional<std::vector<CpuTicks>>> script) {
    return CPUMonitor(std::make_unique<ScriptedCpuSource>(std::move(script)));
}

TEST(CpuMonitorTotal, ReportsBusyFractionOfEachInterval) {
    struct Case {
        const char* name;
        std::vector<CpuTicks> first;
        std::vector<CpuTicks> second;
        double firstExpected;
        double secondExpected;
    };
    const std::vector<Case> cases{
        {"first call averages since boot, then 30+10 busy of 100",
         {ticks(100, 100, 200, 0)},
         {ticks(130, 110, 260, 0)},
         0.5,
         0.4},
        {"unchanged counters give 0", {ticks(5, 5, 10, 0)}, {ticks(5, 5, 10, 0)}, 0.5, 0.0},
        {"nice counts as busy, summed over processors",
         {ticks(0, 0, 0, 0), ticks(0, 0, 0, 0)},
         {ticks(10, 0, 10, 10), ticks(0, 0, 20, 0)},
         0.0,
         0.4},
        {"fully idle", {ticks(0, 0, 50, 0)}, {ticks(0, 0, 150, 0)}, 0.0, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto monitor = monitorReading({c.first, c.second});
        EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), c.firstExpected);
        EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), c.secondExpected);
    }
}

TEST(CpuMonitorTotal, FailedReadGivesZeroAndKeepsThePreviousCounters) {
    auto monitor = monitorReading(
        {std::vector{ticks(10, 10, 80, 0)}, std::nullopt, std::vector{ticks(40, 20, 140, 0)}});
    EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), 0.2);
    EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), 0.0);
    // The next good read covers the whole span since the last good one: 40 busy of 100.
    EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), 0.4);
}

TEST(CpuMonitorTotal, ProcessorCountChangeDoesNotResetTheMachineTotals) {
    auto monitor = monitorReading(
        {std::vector{ticks(50, 0, 50, 0)}, std::vector{ticks(50, 0, 50, 0), ticks(25, 0, 75, 0)}});
    EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), 0.5);
    // A new processor's counters count as new ticks: 25 busy of 100.
    EXPECT_DOUBLE_EQ(monitor.getTotalUsage(), 0.25);
}

using CpuMonitorTotalDeathTest = ::testing::Test;

TEST_F(CpuMonitorTotalDeathTest, BrokenCountersEndTheProcess) {
    EXPECT_DEATH(
        {
            auto monitor = monitorReading(
                {std::vector{ticks(100, 0, 100, 0)}, std::vector{ticks(90, 0, 100, 0)}});
            monitor.getTotalUsage();
            monitor.getTotalUsage();
        },
        "went backwards");
    EXPECT_DEATH(
        {
            auto monitor = monitorReading({std::vector{ticks(UINT64_MAX, 1, 0, 0)}});
            monitor.getTotalUsage();
        },
        "overflowed");
    EXPECT_DEATH(
        {
            // Idle rises by 50 while the total rises by 40: impossible for a sane source.
            auto monitor = monitorReading(
                {std::vector{ticks(100, 0, 100, 0)}, std::vector{ticks(90, 0, 150, 0)}});
            monitor.getTotalUsage();
            monitor.getTotalUsage();
        },
        "idle ticks advanced");
}

TEST(CpuMonitorPerCore, ReportsEachProcessorAgainstItsOwnPrevious) {
    auto monitor = monitorReading({std::vector{ticks(10, 10, 80, 0), ticks(0, 0, 100, 0)},
                                   std::vector{ticks(40, 20, 140, 0), ticks(0, 0, 100, 0)}});
    EXPECT_EQ(monitor.getPerCoreUsage(), (std::vector{0.2, 0.0}));
    EXPECT_EQ(monitor.getPerCoreUsage(), (std::vector{0.4, 0.0}));
}

TEST(CpuMonitorPerCore, CountChangeRestartsFromZeroForEveryProcessor) {
    std::vector<CpuTicks> eight(8, ticks(10, 10, 80, 0));
    std::vector<CpuTicks> eightLater(8, ticks(20, 20, 160, 0));
    std::vector<CpuTicks> ten(10, ticks(30, 10, 60, 0));
    auto monitor = monitorReading({eight, eightLater, ten});
    EXPECT_EQ(monitor.getPerCoreUsage().size(), 8u);
    EXPECT_EQ(monitor.getPerCoreUsage(), std::vector<double>(8, 0.2));
    // Ten processors are computed against zeros: their since-boot averages.
    EXPECT_EQ(monitor.getPerCoreUsage(), std::vector<double>(10, 0.4));
}

TEST(CpuMonitorPerCore, FailedReadGivesEmptyAndKeepsThePrevious) {
    auto monitor = monitorReading(
        {std::vector{ticks(10, 10, 80, 0)}, std::nullopt, std::vector{ticks(40, 20, 140, 0)}});
    EXPECT_EQ(monitor.getPerCoreUsage(), std::vector{0.2});
    EXPECT_TRUE(monitor.getPerCoreUsage().empty());
    EXPECT_EQ(monitor.getPerCoreUsage(), std::vector{0.4});
}

TEST(CpuMonitorPerCore, BackwardCountersWrapInsteadOfEndingTheProcess) {
    auto monitor =
        monitorReading({std::vector{ticks(100, 0, 100, 0)}, std::vector{ticks(90, 0, 100, 0)}});
    monitor.getPerCoreUsage();
    const auto usages = monitor.getPerCoreUsage();
    ASSERT_EQ(usages.size(), 1u);
    // delta total wraps to 2^64 - 10; busy = that delta (idle unchanged): a fraction of 1.
    EXPECT_DOUBLE_EQ(usages[0], 1.0);
}

} // namespace
