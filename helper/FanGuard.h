#pragma once

#include "FanStateFile.h"
#include "SensorCollector.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

/// Owns the daemon's fan control files and puts every fan it touched back the way it
/// found it. At start it takes each fan's value and mode (pwmN and pwmN_enable, or the
/// RPM output and its manual switch) as the originals; restoring writes them back,
/// value first so the mode never returns to a stale duty, reads the mode back, and runs
/// the fan at full speed when that fails.
class FanGuard {
public:
    enum class DriveResult { driven, notControllable, saveFailed, writeFailed };
    enum class RestoreResult { restored, fullSpeed, failed };

    /// Opens the control files of every fan; call before dropping privileges.
    explicit FanGuard(const std::vector<FanReading>& fans);
    ~FanGuard();
    FanGuard(const FanGuard&) = delete;
    FanGuard& operator=(const FanGuard&) = delete;
    FanGuard(FanGuard&&) noexcept;
    FanGuard& operator=(FanGuard&&) = delete;

    std::size_t fanCount() const { return fans_.size(); }
    const std::string& keyOf(std::size_t id) const { return fans_.at(id).key; }
    bool isControllable(std::size_t id) const;
    bool isHeld(std::size_t id) const;

    /// Writes back the states a daemon that did not end cleanly saved, for the fans that
    /// are still here (matched by key, never by position). Returns the fans it could
    /// not put back; those run at full speed if that can be set.
    std::vector<std::string> restoreLeftover(const std::vector<SavedFanState>& states);

    /// Reads every controllable fan's present state as its original. A fan whose state
    /// cannot be read is not controlled at all, since it could not be handed back.
    std::vector<SavedFanState> takeOriginals();

    /// The fan whose key (hwmon/<chip>/<device>/fanN) is `key`, if the daemon has it.
    std::optional<std::size_t> indexOf(std::string_view key) const;
    /// Whether a speed can be asked of the fan: a speed-target fan, or a PWM fan whose
    /// chip reports the maximum a speed is a share of.
    bool takesSpeed(std::size_t id) const;
    /// Whether a duty can be asked of the fan: PWM fans.
    bool takesDuty(std::size_t id) const;

    /// The lowest speed the daemon sets: the fan's own minimum when it reports one, else
    /// 20 % of its maximum, so no command can stop a fan.
    long long minimumRpm(std::size_t id) const;
    /// The lowest duty the daemon sets: 20 %, or the chip's minimum speed as a share of
    /// its maximum when that is more.
    long long minimumDutyPercent(std::size_t id) const;

    /// Sets fan `id` to `rpm`, raised to its minimum and capped at its maximum, as a
    /// duty of rpm / max or as an RPM value, saving its state first if it was not held
    /// yet. notControllable unless takesSpeed(id).
    DriveResult drive(std::size_t id, long long rpm);
    /// Sets PWM fan `id` to `percent` of full duty, raised to its minimum duty, saving
    /// its state first if it was not held yet. notControllable unless takesDuty(id).
    DriveResult driveDuty(std::size_t id, long long percent);

    /// Hands fan `id` back; a fan that is not held is left alone.
    RestoreResult restore(std::size_t id);

private:
    struct Saved {
        std::optional<long long> mode;
        long long value = 0;
    };
    struct Fan {
        std::string key;         ///< the fan's name in commands
        std::string controlPath; ///< its value file: its name in the state file
        bool reportsMax = false;
        FanControlKind kind = FanControlKind::none;
        int modeFd = -1;
        int valueFd = -1;
        long long maxRpm = 0;
        long long minRpm = 0;
        std::optional<Saved> original;
        std::optional<Saved> saved; ///< set while the daemon holds the fan
    };

    static std::optional<Saved> readState(const Fan& fan);
    /// Saves the fan's state if it is not held yet, then writes `value` in manual mode.
    DriveResult hold(std::size_t id, long long value);
    /// Writes `saved` back, value first, and reads the mode (else the value) back.
    static bool putBack(const Fan& fan, const Saved& saved);
    bool write(const Fan& fan, std::optional<long long> mode, long long value);
    bool runFullSpeed(const Fan& fan);

    std::vector<Fan> fans_;
};
