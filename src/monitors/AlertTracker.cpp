#include "AlertTracker.h"

#include <cmath>

std::vector<FiredAlert> AlertTracker::update(double now, const Rules& rules, const Values& values) {
    std::vector<FiredAlert> fired;
    for (std::size_t i = 0; i < alertKindCount; ++i) {
        State& state = states[i];
        const AlertRule& rule = rules[i];
        if (!rule.enabled) {
            state = {};
            continue;
        }
        // A value that is not a number is no reading: it counts as below.
        const bool above = std::isfinite(values[i]) && values[i] >= rule.level;
        if (above) {
            state.belowSince.reset();
            if (!state.aboveSince)
                state.aboveSince = now;
            const double held = now - *state.aboveSince;
            if (!state.firedAfter && held >= rule.seconds) {
                state.firedAfter = held;
                fired.push_back({static_cast<AlertKind>(i), values[i], held});
            }
            continue;
        }
        state.aboveSince.reset();
        if (!state.belowSince)
            state.belowSince = now;
        if (state.firedAfter && now - *state.belowSince >= *state.firedAfter)
            state.firedAfter.reset();
    }
    return fired;
}
