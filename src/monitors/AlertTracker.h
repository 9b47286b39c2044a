#pragma once

#include <array>
#include <optional>
#include <vector>

/// What an alert watches: the CPU temperature (°C), the CPU total (% busy), memory pressure
/// (% used), the root volume (% used) and the fans being handed back to automatic control
/// (1 when it happened this tick).
enum class AlertKind { cpuTemperature, cpuLoad, memoryPressure, diskFull, fansHandedBack };
inline constexpr std::size_t alertKindCount = 5;

/// One condition: on or off, the level the value must reach, and for how many seconds.
struct AlertRule {
    bool enabled = false;
    double level = 0.0;
    double seconds = 0.0;
};

/// An alert that fires: its value now and how long it has held.
struct FiredAlert {
    AlertKind kind;
    double value;
    double heldSeconds;

    bool operator==(const FiredAlert&) const = default;
};

/// Decides when alerts fire from one value per kind a tick. An alert fires once its value
/// has stayed at or above its level for its duration, and does not fire again until the
/// value has stayed below for as long as it took to fire: a value that hovers at the
/// level does not flap. A kind turned off forgets its state.
class AlertTracker {
public:
    using Rules = std::array<AlertRule, alertKindCount>;
    using Values = std::array<double, alertKindCount>;

    /// The alerts that fire at `now` (seconds on a steady clock).
    std::vector<FiredAlert> update(double now, const Rules& rules, const Values& values);
    /// Whether `kind` is at or above its level now, fired or not.
    bool isAbove(AlertKind kind) const { return states[index(kind)].aboveSince.has_value(); }

private:
    struct State {
        std::optional<double> aboveSince;
        std::optional<double> belowSince;
        std::optional<double> firedAfter; ///< set while fired and not yet cleared
    };
    static std::size_t index(AlertKind kind) { return static_cast<std::size_t>(kind); }

    std::array<State, alertKindCount> states;
};
