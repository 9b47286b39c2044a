#include "Failsafe.h"

#include <algorithm>

namespace {
constexpr long long triggerMilliCelsius = 95000;
constexpr long long releaseMilliCelsius = 85000;
constexpr long long critMarginMilliCelsius = 5000;
constexpr long long hysteresisMilliCelsius = 10000;
} // namespace

Failsafe::Limits Failsafe::limitsFor(std::optional<long long> critMilliCelsius) {
    long long trigger = triggerMilliCelsius;
    if (critMilliCelsius && *critMilliCelsius > 0)
        trigger = std::min(trigger, *critMilliCelsius - critMarginMilliCelsius);
    return {trigger, std::min(releaseMilliCelsius, trigger - hysteresisMilliCelsius)};
}

Failsafe::Change Failsafe::update(const std::vector<std::optional<long long>>& milliCelsius) {
    bool anyHot = false;
    bool allCool = true;
    for (std::size_t i = 0; i < sensors_.size() && i < milliCelsius.size(); ++i) {
        if (!milliCelsius[i])
            continue;
        anyHot = anyHot || *milliCelsius[i] >= sensors_[i].triggerMilliCelsius;
        allCool = allCool && *milliCelsius[i] < sensors_[i].releaseMilliCelsius;
    }
    if (!engaged_ && anyHot) {
        engaged_ = true;
        return Change::engaged;
    }
    if (engaged_ && allCool) {
        engaged_ = false;
        return Change::released;
    }
    return Change::none;
}
