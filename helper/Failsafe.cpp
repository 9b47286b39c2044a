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
    bool anyLost = false;
    bool allCool = true;
    for (std::size_t i = 0; i < sensors_.size(); ++i) {
        const std::optional<long long> value =
            i < milliCelsius.size() ? milliCelsius[i] : std::nullopt;
        if (!value) {
            ++unreadableStreaks_[i];
            anyLost = anyLost || unreadableStreaks_[i] >= unreadableChecksLimit;
            allCool = false;
            continue;
        }
        unreadableStreaks_[i] = 0;
        anyHot = anyHot || *value >= sensors_[i].triggerMilliCelsius;
        allCool = allCool && *value < sensors_[i].releaseMilliCelsius;
    }
    if (!engaged_ && (anyHot || anyLost)) {
        engaged_ = true;
        return anyHot ? Change::engagedHot : Change::engagedUnreadable;
    }
    if (engaged_ && allCool) {
        engaged_ = false;
        return Change::released;
    }
    return Change::none;
}
