// libFuzzer target for the daemon's input: line splitting and command parsing. The
// daemon runs setuid-root, so every byte sequence must end in a command or a refusal.

#include "CommandLineReader.h"
#include "CommandParser.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

void require(bool condition) {
    if (!condition)
        __builtin_trap();
}

std::string lineOf(const Command& command) {
    switch (command.kind) {
    case CommandKind::quit:
        return "quit";
    case CommandKind::fanAuto:
        return "fan-auto " + command.fans.at(0).key;
    case CommandKind::setFan:
    case CommandKind::setDuty:
        return (command.kind == CommandKind::setFan ? "set-fan " : "set-duty ") +
               command.fans.at(0).key + " " + std::to_string(command.fans.at(0).value);
    case CommandKind::setAll: {
        std::string line = "set-all";
        for (const FanValue& fan : command.fans)
            line += " " + fan.key + "=" + std::to_string(fan.value);
        return line;
    }
    }
    return {};
}

void checkLine(std::string_view line) {
    const ParsedCommand parsed = parseCommand(line);
    if (!parsed.command) {
        require(!parsed.error.empty());
        return;
    }
    require(parsed.error.empty());
    require(line.size() <= maxCommandLineBytes);
    // Nothing that could reach a shell, a path outside sysfs keys, or a second line.
    require(line.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                   "0123456789-_.:/+= ") == std::string_view::npos);
    const Command& command = *parsed.command;
    require(command.kind == CommandKind::quit ? command.fans.empty() : !command.fans.empty());
    require(command.kind == CommandKind::setAll || command.fans.size() <= 1);
    for (const FanValue& fan : command.fans)
        require(isCommandFanKey(fan.key));
    // Whatever was accepted says the same thing when written the canonical way.
    require(parseCommand(lineOf(command)).command == command);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    checkLine(input);

    // The same bytes as a stream arriving in two reads, cut at a point the input picks.
    const std::size_t cut = size == 0 ? 0 : data[0] % (size + 1);
    CommandLineReader reader;
    reader.append(input.substr(0, cut));
    reader.append(input.substr(cut));
    std::size_t lines = 0;
    while (const auto line = reader.nextLine()) {
        require(line->size() <= maxCommandLineBytes + 1);
        require(line->find('\n') == std::string::npos);
        checkLine(*line);
        ++lines;
    }
    require(lines <= size);
    return 0;
}
