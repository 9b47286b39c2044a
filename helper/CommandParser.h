#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The daemon's command language: "set-fan <id> <rpm>", "set-all <rpm0> <rpm1> ...",
// "fan-auto <id>" and "quit", single spaces, plain decimal numbers.

enum class CommandKind { setFan, setAll, fanAuto, quit };

struct Command {
    CommandKind kind = CommandKind::quit;
    std::uint32_t fanId = 0;         ///< set-fan, fan-auto
    std::vector<std::uint32_t> rpms; ///< set-fan: one value; set-all: one per fan from 0

    bool operator==(const Command&) const = default;
};

struct ParsedCommand {
    std::optional<Command> command;
    std::string error; ///< why the line was refused, when there is no command
};

constexpr std::size_t maxCommandLineBytes = 128;

/// Parses one line without its line feed. Anything but the four exact forms is refused.
ParsedCommand parseCommand(std::string_view line);
