#include "monitors/AlertTracker.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// One kind's values a tick apart, against a level of 90 held for 4 s: the ticks at which
// it fires (the first tick is at 0 s).
TEST(AlertTracker, FiresAfterItsDurationOnceAndAgainOnlyAfterClearingAsLong) {
    const double nan = std::nan("");
    const struct {
        const char* name;
        std::vector<double> values;
        std::vector<int> firing;
    } cases[] = {
        {"held long enough", {95, 95, 95, 95, 95, 95}, {2}},
        {"just at the level", {90, 90, 90}, {2}},
        {"broken by a dip", {95, 95, 80, 95, 95, 95}, {5}},
        {"once while it lasts", {95, 95, 95, 95, 95, 95, 95, 95}, {2}},
        // Fired after 4 s: below for 2 s is too short to clear, 4 s clears it.
        {"a short dip does not re-fire", {95, 95, 95, 80, 95, 95, 95, 95}, {2}},
        {"clears, then fires again", {95, 95, 95, 80, 80, 80, 95, 95, 95}, {2, 8}},
        {"no reading is not hot", {nan, nan, nan, 95}, {}},
    };
    for (const auto& c : cases) {
        AlertTracker tracker;
        AlertTracker::Rules rules{};
        rules[0] = {true, 90.0, 4.0};
        std::vector<int> firing;
        for (std::size_t tick = 0; tick < c.values.size(); ++tick) {
            AlertTracker::Values values{};
            values[0] = c.values[tick];
            if (!tracker.update(2.0 * double(tick), rules, values).empty())
                firing.push_back(int(tick));
        }
        EXPECT_EQ(firing, c.firing) << c.name;
    }
}

TEST(AlertTracker, EachKindKeepsItsOwnStateAndOneTurnedOffForgetsIt) {
    AlertTracker tracker;
    AlertTracker::Rules rules{};
    rules[1] = {true, 95.0, 0.0};
    rules[4] = {true, 1.0, 0.0};
    const AlertTracker::Values both{0, 99, 0, 0, 1};
    EXPECT_EQ(
        tracker.update(0, rules, both),
        (std::vector<FiredAlert>{{AlertKind::cpuLoad, 99, 0}, {AlertKind::fansHandedBack, 1, 0}}));
    rules[1].enabled = false;
    EXPECT_TRUE(tracker.update(2, rules, both).empty());
    EXPECT_FALSE(tracker.isAbove(AlertKind::cpuLoad));
    rules[1].enabled = true;
    EXPECT_EQ(tracker.update(4, rules, both),
              (std::vector<FiredAlert>{{AlertKind::cpuLoad, 99, 0}}))
        << "turned on again, it starts afresh";
}

} // namespace
