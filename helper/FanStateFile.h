#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A fan's state as the machine left it before the daemon took it: its control value
/// (pwmN, fanN_output or fanN_target) and, where the chip has one, its mode.
struct SavedFanState {
    std::string key; ///< the fan's control value path: stable while the device exists
    std::optional<long long> mode;
    long long value = 0;

    bool operator==(const SavedFanState&) const = default;
};

/// One line per fan: "<key> <mode or -> <value>". Keys are sysfs paths, which hold no
/// blanks or line feeds.
std::string formatFanStates(const std::vector<SavedFanState>& states);

/// The lines of `text` that are whole and well formed; anything else is skipped, so a
/// damaged file costs only its damaged lines.
std::vector<SavedFanState> parseFanStates(std::string_view text);
