#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The daemon's command language, single spaces, plain decimal numbers, fans named by
// the stable key of the "--all" answer (hwmon/<chip>/<device>/fanN):
//   set-fan <key> <rpm>               drive one fan at a speed (fans that report a maximum)
//   set-duty <key> <percent>          drive one fan at a duty, 0-100 (PWM fans)
//   set-all <key>=<rpm> <key>=<rpm>…  drive several fans at once
//   fan-auto <key>                    hand one fan back to automatic control
//   quit
// A key and not a position names the fan, so a fan that appears or goes never makes a
// command move a different one.

enum class CommandKind { setFan, setDuty, setAll, fanAuto, quit };

struct FanValue {
    std::string key;
    std::uint32_t value = 0; ///< RPM, or percent for set-duty; 0 for fan-auto

    bool operator==(const FanValue&) const = default;
};

struct Command {
    CommandKind kind = CommandKind::quit;
    std::vector<FanValue> fans; ///< one entry except for set-all (one or more); none for quit

    bool operator==(const Command&) const = default;
};

struct ParsedCommand {
    std::optional<Command> command;
    std::string error; ///< why the line was refused, when there is no command
};

/// Room for a set-all over every fan the helper reports, with their longest keys.
constexpr std::size_t maxCommandLineBytes = 8192;
constexpr std::size_t maxFanKeyBytes = 160;

/// Parses one line without its line feed. Anything but the five exact forms is refused.
ParsedCommand parseCommand(std::string_view line);

/// Whether `key` can travel in a command: 1 to maxFanKeyBytes of letters, digits and
/// ". _ - : / +", so it never holds a space, an '=' or a control character.
bool isCommandFanKey(std::string_view key);
