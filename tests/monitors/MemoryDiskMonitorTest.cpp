#include "FakeSources.h"
#include "monitors/DiskMonitor.h"
#include "monitors/MemoryMonitor.h"

#include <gtest/gtest.h>

namespace {

TEST(MemoryMonitor, ConvertsBytesToGiBAndLeavesInactiveOutOfUsed) {
    MemoryCounters counters;
    counters.installed = 17179869184; // 16 GiB
    counters.active = 262144ull * 16384;
    counters.wired = 65536ull * 16384;
    counters.inactive = 999999ull * 16384;
    MemoryMonitor monitor(std::make_unique<ScriptedMemorySource>(
        std::deque<std::optional<MemoryCounters>>{counters}));
    const MemoryUsage usage = monitor.getMemoryUsage();
    EXPECT_DOUBLE_EQ(usage.total, 16.0);
    EXPECT_DOUBLE_EQ(usage.active, 4.0);
    EXPECT_DOUBLE_EQ(usage.wired, 1.0);
    EXPECT_DOUBLE_EQ(usage.compressed, 0.0);
    EXPECT_DOUBLE_EQ(usage.used, 5.0);
}

TEST(MemoryMonitor, FailedReadGivesAllZerosIncludingTotal) {
    MemoryMonitor monitor(std::make_unique<ScriptedMemorySource>(
        std::deque<std::optional<MemoryCounters>>{std::nullopt}));
    EXPECT_EQ(monitor.getMemoryUsage(), MemoryUsage{});
}

TEST(DiskMonitor, ReportsUsedAndTotalInGiB) {
    DiskMonitor monitor(
        std::make_unique<ScriptedVolumeSource>(std::deque<std::optional<VolumeCapacity>>{
            VolumeCapacity{500000000000.0, 100000000000.0}, std::nullopt}));
    const DiskUsage usage = monitor.getDiskUsage();
    EXPECT_DOUBLE_EQ(usage.total, 465.66128730773926);
    EXPECT_DOUBLE_EQ(usage.used, 372.5290298461914);
    EXPECT_EQ(monitor.getDiskUsage(), DiskUsage{}) << "a failed query gives zeros";
}

} // namespace
