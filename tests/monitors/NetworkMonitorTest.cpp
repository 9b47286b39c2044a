#include "monitors/NetworkMonitor.h"
#include "FakeSources.h"

#include <gtest/gtest.h>

namespace {

using Interfaces = std::vector<InterfaceCounters>;

struct ManualClock {
    double now = 100.0;
    MonotonicClock function() {
        return [this] { return now; };
    }
};

Interfaces ethernet(std::uint64_t received, std::uint64_t sent) {
    return {{"eth0", received, sent}};
}

TEST(NetworkMonitor, FirstReadIsZeroWhateverTheCounters) {
    ManualClock clock;
    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(
            std::deque<std::optional<Interfaces>>{ethernet(5'000'000'000, 7'000'000)}),
        clock.function());
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 0.0}));
}

TEST(NetworkMonitor, RatesFollowCounterDeltasOverElapsedTime) {
    ManualClock clock;
    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{
            ethernet(1000, 1000), ethernet(2'001'000, 501'000), ethernet(2'001'000, 501'000)}),
        clock.function());
    monitor.getThroughput();
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{1'000'000.0, 250'000.0}));
    clock.now += 0.5;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 0.0}));
}

TEST(NetworkMonitor, FallingSumCountsAsNoTrafficAndBecomesTheBaseline) {
    ManualClock clock;
    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{
            ethernet(10'000, 1000), ethernet(4000, 3000), ethernet(6000, 3000)}),
        clock.function());
    monitor.getThroughput();
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 1000.0}));
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{1000.0, 0.0}));
}

TEST(NetworkMonitor, ClockThatStallsOrRunsBackKeepsTheBaseline) {
    ManualClock clock;
    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{
            ethernet(0, 0), ethernet(1000, 1000), ethernet(2000, 2000), ethernet(4000, 4000)}),
        clock.function());
    monitor.getThroughput();
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 0.0})) << "clock did not advance";
    clock.now -= 5.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 0.0})) << "clock ran back";
    // The baseline is still the first read (0 bytes at t=100).
    clock.now = 104.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{1000.0, 1000.0}));
}

TEST(NetworkMonitor, FailedReadSumsToZeroThenTheNextReadCoversTheWholeCounter) {
    ManualClock clock;
    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{
            ethernet(1000, 1000), std::nullopt, ethernet(3000, 5000)}),
        clock.function());
    monitor.getThroughput();
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{0.0, 0.0}));
    clock.now += 2.0;
    EXPECT_EQ(monitor.getThroughput(), (NetworkThroughput{1500.0, 2500.0}));
}

TEST(NetworkMonitor, OnlyPhysicalLinksCount) {
    const std::vector<std::pair<std::string, bool>> names{
        {"en0", true},     {"enp3s0", true},   {"utun3", true},     {"pdp_ip0", true},
        {"eth0", true},    {"wlp2s0", true},   {"wlan0", true},     {"wwan0", true},
        {"lo", false},     {"lo0", false},     {"bridge0", false},  {"awdl0", false},
        {"llw0", false},   {"docker0", false}, {"veth1a2b", false}, {"br-0123", false},
        {"virbr0", false}, {"ifb0", false},    {"tun0", false},     {"wg0", false},
    };
    for (const auto& [name, counted] : names)
        EXPECT_EQ(NetworkMonitor::isCountedInterface(name), counted) << name;

    NetworkMonitor monitor(
        std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{Interfaces{
            {"lo", 100, 100}, {"eth0", 1, 2}, {"docker0", 100, 100}, {"wlan0", 10, 20}}}));
    EXPECT_EQ(monitor.counterSum(), (std::pair<std::uint64_t, std::uint64_t>{11, 22}));
}

TEST(NetworkMonitorDeathTest, SumOverflowAndNamelessInterfacesEndTheProcess) {
    EXPECT_DEATH(
        {
            NetworkMonitor monitor(
                std::make_unique<ScriptedInterfaceSource>(std::deque<std::optional<Interfaces>>{
                    Interfaces{{"eth0", UINT64_MAX, 0}, {"eth1", 1, 0}}}));
            monitor.counterSum();
        },
        "overflowed");
    EXPECT_DEATH(
        {
            NetworkMonitor monitor(std::make_unique<ScriptedInterfaceSource>(
                std::deque<std::optional<Interfaces>>{Interfaces{{"", 1, 1}}}));
            monitor.counterSum();
        },
        "without a name");
}

} // namespace
