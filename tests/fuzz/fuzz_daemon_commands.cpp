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
        return "fan-auto " + std::to_string(command.fanId);
    case CommandKind::setFan:
        return "set-fan " + std::to_string(command.fanId) + " " +
               std::to_string(command.rpms.at(0));
    case CommandKind::setAll: {
        std::string line = "set-all";
        for (std::uint32_t rpm : command.rpms)
            line += " " + std::to_string(rpm);
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
    require(line.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789- ") ==
            std::string_view::npos);
    const Command& command = *parsed.command;
    require(command.kind != CommandKind::setFan || command.rpms.size() == 1);
    require(command.kind != CommandKind::setAll || !command.rpms.empty());
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
