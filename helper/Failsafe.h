#pragma once

#include <optional>
#include <vector>

/// Hands the fans back when the CPU runs hot: engages while any CPU sensor is at or
/// above 95 °C (or its critical trip - 5 °C), and releases once every sensor is below
/// 85 °C (or 10 °C under its trigger, so a low critical trip cannot make it flap).
class Failsafe {
public:
    struct Limits {
        long long triggerMilliCelsius = 0;
        long long releaseMilliCelsius = 0;
    };
    enum class Change { none, engaged, released };

    static Limits limitsFor(std::optional<long long> critMilliCelsius);

    explicit Failsafe(std::vector<Limits> sensors) : sensors_(std::move(sensors)) {}

    /// One reading per sensor, in the constructor's order; unreadable ones are nullopt.
    Change update(const std::vector<std::optional<long long>>& milliCelsius);
    bool engaged() const { return engaged_; }

private:
    std::vector<Limits> sensors_;
    bool engaged_ = false;
};
