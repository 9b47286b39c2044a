#include "Failsafe.h"

#include <gtest/gtest.h>

namespace {

using Change = Failsafe::Change;

TEST(Failsafe, LimitsComeFrom95And85OrTheCriticalTrip) {
    struct Case {
        std::optional<long long> crit;
        long long trigger;
        long long release;
    };
    const std::vector<Case> cases = {
        {std::nullopt, 95000, 85000}, {105000, 95000, 85000}, {100000, 95000, 85000},
        {90000, 85000, 75000},        {0, 95000, 85000},      {-5000, 95000, 85000},
    };
    for (const Case& c : cases) {
        const Failsafe::Limits limits = Failsafe::limitsFor(c.crit);
        EXPECT_EQ(limits.triggerMilliCelsius, c.trigger) << c.crit.value_or(-1);
        EXPECT_EQ(limits.releaseMilliCelsius, c.release) << c.crit.value_or(-1);
    }
}

TEST(Failsafe, EngagesOnAnyHotSensorAndReleasesWhenAllHaveCooled) {
    Failsafe failsafe({Failsafe::limitsFor(std::nullopt), Failsafe::limitsFor(90000)});
    struct Step {
        std::vector<std::optional<long long>> readings;
        Change change;
        bool engagedAfter;
    };
    const std::vector<Step> steps = {
        {{94999, 84999}, Change::none, false},
        {{95000, 50000}, Change::engaged, true},          // at the trigger counts
        {{90000, 50000}, Change::none, true},             // between release and trigger
        {{84999, 80000}, Change::none, true},             // second: not below its 75 °C
        {{84999, std::nullopt}, Change::released, false}, // unreadable sensors left out
        {{60000, 85000}, Change::engaged, true},          // crit 90 °C: trigger at 85 °C
        {{60000, 74999}, Change::released, false},
        {{std::nullopt, std::nullopt}, Change::none, false},
    };
    for (std::size_t i = 0; i < steps.size(); ++i) {
        EXPECT_EQ(failsafe.update(steps[i].readings), steps[i].change) << "step " << i;
        EXPECT_EQ(failsafe.engaged(), steps[i].engagedAfter) << "step " << i;
    }
}

} // namespace
