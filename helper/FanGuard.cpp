#include "FanGuard.h"

#include "SysfsAttribute.h"

#include <algorithm>
#include <unistd.h>

namespace {

// Never shown or reported: it only bounds a speed-target fan that names no maximum,
// giving it a floor (20 % of this) and a "full speed" to fall back on.
constexpr long long assumedMaxRpm = 6000;
constexpr long long fullDuty = 255;
constexpr long long manualMode = 1;
constexpr long long minimumPercent = 20;

} // namespace

FanGuard::FanGuard(const std::vector<FanReading>& fans) {
    for (const FanReading& reading : fans) {
        Fan fan;
        fan.key = reading.key;
        fan.controlPath = reading.control.valuePath;
        fan.reportsMax = reading.maxRpm.has_value();
        fan.maxRpm = reading.maxRpm.value_or(assumedMaxRpm);
        const long long chipMin = reading.minRpm.value_or(0);
        fan.minRpm =
            chipMin > 0 ? std::min(chipMin, fan.maxRpm) : (fan.maxRpm * minimumPercent + 99) / 100;
        const FanControlPaths& control = reading.control;
        if (control.kind != FanControlKind::none) {
            fan.valueFd = openAttribute(control.valuePath, true);
            fan.modeFd = control.modePath.empty() ? -1 : openAttribute(control.modePath, true);
            const bool modeMissing = !control.modePath.empty() && fan.modeFd < 0;
            if (fan.valueFd >= 0 && !modeMissing)
                fan.kind = control.kind;
        }
        fans_.push_back(fan);
    }
}

FanGuard::FanGuard(FanGuard&& other) noexcept : fans_(std::move(other.fans_)) {
    other.fans_.clear();
}

FanGuard::~FanGuard() {
    for (const Fan& fan : fans_) {
        for (int fd : {fan.modeFd, fan.valueFd}) {
            if (fd >= 0)
                ::close(fd);
        }
    }
}

bool FanGuard::isControllable(std::size_t id) const {
    return id < fans_.size() && fans_[id].kind != FanControlKind::none;
}

long long FanGuard::minimumRpm(std::size_t id) const {
    return id < fans_.size() ? fans_[id].minRpm : 0;
}

bool FanGuard::isHeld(std::size_t id) const {
    return id < fans_.size() && fans_[id].saved.has_value();
}

std::optional<FanGuard::Saved> FanGuard::readState(const Fan& fan) {
    Saved saved;
    const auto value = readAttributeInteger(fan.valueFd);
    if (!value)
        return std::nullopt;
    saved.value = *value;
    if (fan.modeFd >= 0) {
        saved.mode = readAttributeInteger(fan.modeFd);
        if (!saved.mode)
            return std::nullopt;
    }
    return saved;
}

std::vector<std::string> FanGuard::restoreLeftover(const std::vector<SavedFanState>& states) {
    std::vector<std::string> failed;
    for (const SavedFanState& state : states) {
        const auto fan = std::find_if(fans_.begin(), fans_.end(), [&](const Fan& candidate) {
            return candidate.kind != FanControlKind::none && candidate.controlPath == state.key;
        });
        if (fan == fans_.end())
            continue; // gone with its device; the kernel reset it when it went
        if (!putBack(*fan, {state.mode, state.value})) {
            runFullSpeed(*fan);
            failed.push_back(state.key);
        }
    }
    return failed;
}

std::vector<SavedFanState> FanGuard::takeOriginals() {
    std::vector<SavedFanState> originals;
    for (Fan& fan : fans_) {
        if (fan.kind == FanControlKind::none)
            continue;
        fan.original = readState(fan);
        if (!fan.original) {
            fan.kind = FanControlKind::none;
            continue;
        }
        originals.push_back({fan.controlPath, fan.original->mode, fan.original->value});
    }
    return originals;
}

bool FanGuard::write(const Fan& fan, std::optional<long long> mode, long long value) {
    if (mode && fan.modeFd >= 0 && !writeAttributeInteger(fan.modeFd, *mode))
        return false;
    return writeAttributeInteger(fan.valueFd, value);
}

std::optional<std::size_t> FanGuard::indexOf(std::string_view key) const {
    for (std::size_t id = 0; id < fans_.size(); ++id) {
        if (fans_[id].key == key)
            return id;
    }
    return std::nullopt;
}

bool FanGuard::takesSpeed(std::size_t id) const {
    return isControllable(id) && (fans_[id].kind != FanControlKind::pwm || fans_[id].reportsMax);
}

bool FanGuard::takesDuty(std::size_t id) const {
    return isControllable(id) && fans_[id].kind == FanControlKind::pwm;
}

FanGuard::DriveResult FanGuard::hold(std::size_t id, long long value) {
    Fan& fan = fans_[id];
    if (!fan.saved)
        fan.saved = fan.original ? fan.original : readState(fan);
    if (!fan.saved)
        return DriveResult::saveFailed;
    return write(fan, manualMode, value) ? DriveResult::driven : DriveResult::writeFailed;
}

FanGuard::DriveResult FanGuard::drive(std::size_t id, long long rpm) {
    if (!takesSpeed(id))
        return DriveResult::notControllable;
    const Fan& fan = fans_[id];
    const long long limited = std::clamp(rpm, fan.minRpm, fan.maxRpm);
    return hold(id, fan.kind == FanControlKind::pwm
                        ? (limited * fullDuty + fan.maxRpm / 2) / fan.maxRpm
                        : limited);
}

FanGuard::DriveResult FanGuard::driveDuty(std::size_t id, long long percent) {
    if (!takesDuty(id))
        return DriveResult::notControllable;
    const long long limited = std::clamp(percent, minimumDutyPercent(id), 100LL);
    return hold(id, (limited * fullDuty + 50) / 100);
}

long long FanGuard::minimumDutyPercent(std::size_t id) const {
    if (id >= fans_.size())
        return minimumPercent;
    const Fan& fan = fans_[id];
    // A chip minimum is a speed; as a duty it is only known against a reported maximum.
    if (!fan.reportsMax)
        return minimumPercent;
    return std::max(minimumPercent, (fan.minRpm * 100 + fan.maxRpm - 1) / fan.maxRpm);
}

FanGuard::RestoreResult FanGuard::restore(std::size_t id) {
    if (!isHeld(id))
        return RestoreResult::restored;
    Fan& fan = fans_[id];
    const Saved saved = *fan.saved;
    fan.saved.reset();
    // Automatic control owns the fan again; what it sets meanwhile is what a later
    // take-over must bring back, so the start-up original no longer applies.
    fan.original.reset();

    if (putBack(fan, saved))
        return RestoreResult::restored;
    return runFullSpeed(fan) ? RestoreResult::fullSpeed : RestoreResult::failed;
}

bool FanGuard::putBack(const Fan& fan, const Saved& saved) {
    bool ok = writeAttributeInteger(fan.valueFd, saved.value);
    if (ok && saved.mode && fan.modeFd >= 0)
        ok = writeAttributeInteger(fan.modeFd, *saved.mode);
    // The mode decides who controls the fan. A duty is not compared: drivers such as
    // thinkpad_acpi quantise it, so it reads back different from what was written.
    if (ok && saved.mode && fan.modeFd >= 0)
        return readAttributeInteger(fan.modeFd) == saved.mode;
    return ok && readAttributeInteger(fan.valueFd) == saved.value;
}

bool FanGuard::runFullSpeed(const Fan& fan) {
    const long long value = fan.kind == FanControlKind::pwm ? fullDuty : fan.maxRpm;
    return write(fan, manualMode, value);
}
