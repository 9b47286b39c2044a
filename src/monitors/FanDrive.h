#pragma once

#include "ThermalReadings.h"

#include <map>
#include <string>
#include <vector>

/// What a manual setting asks of one fan. A fan that reports its maximum is given a
/// speed, that share of the maximum; one that does not is given the duty itself, since
/// any speed would be a share of a guessed maximum.
struct FanDrive {
    enum class Kind { none, speed, duty };
    Kind kind = Kind::none; ///< none: the fan has no key and cannot be named
    std::string key;
    double value = 0.0; ///< RPM for a speed, percent for a duty

    bool operator==(const FanDrive&) const = default;
};

FanDrive fanDrive(const FanInfo& fan, double percent);
/// One drive per fan, each at its percentage (0 when it has none).
std::vector<FanDrive> fanDrives(const std::vector<FanInfo>& fans,
                                const std::map<long long, double>& percentByFan);
