#pragma once

#include <optional>
#include <vector>

/// Hands the fans back when the machine runs hot: engages while any watched sensor is at
/// or above 95 °C (or its critical trip - 5 °C), or has been unreadable for three checks
/// in a row, and releases once every sensor reads below 85 °C (or 10 °C under its
/// trigger, so a low critical trip cannot make it flap).
class Failsafe {
public:
    struct Limits {
        long long triggerMilliCelsius = 0;
        long long releaseMilliCelsius = 0;
    };
    enum class Change { none, engagedHot, engagedUnreadable, released };

    static constexpr int unreadableChecksLimit = 3;

    static Limits limitsFor(std::optional<long long> critMilliCelsius);

    explicit Failsafe(std::vector<Limits> sensors)
        : sensors_(std::move(sensors)), unreadableStreaks_(sensors_.size(), 0) {}

    /// One reading per sensor, in the constructor's order; unreadable ones are nullopt.
    Change update(const std::vector<std::optional<long long>>& milliCelsius);
    bool engaged() const { return engaged_; }

private:
    std::vector<Limits> sensors_;
    std::vector<int> unreadableStreaks_;
    bool engaged_ = false;
};
