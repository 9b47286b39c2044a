#include "CommandParser.h"

namespace {

constexpr std::size_t maxDigits = 9;

std::vector<std::string_view> splitOnSpaces(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t start = 0;
    while (true) {
        const std::size_t space = line.find(' ', start);
        words.push_back(line.substr(start, space - start));
        if (space == std::string_view::npos)
            return words;
        start = space + 1;
    }
}

ParsedCommand refuse(std::string error) {
    return {std::nullopt, std::move(error)};
}

// Plain decimal digits only: no sign, no blanks, no hex, at most nine digits.
std::optional<std::uint32_t> parseNumber(std::string_view word, std::string& error) {
    if (word.empty()) {
        error = "missing number or extra space";
        return std::nullopt;
    }
    if (word.front() == '-') {
        error = "negative number";
        return std::nullopt;
    }
    for (const char c : word) {
        if (c < '0' || c > '9') {
            error = "not a decimal number";
            return std::nullopt;
        }
    }
    if (word.size() > maxDigits) {
        error = "number too large";
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (const char c : word)
        value = value * 10 + static_cast<std::uint32_t>(c - '0');
    return value;
}

} // namespace

ParsedCommand parseCommand(std::string_view line) {
    if (line.size() > maxCommandLineBytes)
        return refuse("line longer than 128 bytes");
    const std::vector<std::string_view> words = splitOnSpaces(line);
    const std::string_view verb = words.front();
    const std::size_t argumentCount = words.size() - 1;

    Command command;
    if (verb == "quit" && argumentCount == 0)
        return {command, {}};
    if (verb == "set-fan" && argumentCount == 2)
        command.kind = CommandKind::setFan;
    else if (verb == "set-all" && argumentCount >= 1)
        command.kind = CommandKind::setAll;
    else if (verb == "fan-auto" && argumentCount == 1)
        command.kind = CommandKind::fanAuto;
    else if (verb == "quit" || verb == "set-fan" || verb == "set-all" || verb == "fan-auto")
        return refuse("wrong number of arguments for " + std::string(verb));
    else
        return refuse("unknown command");

    std::vector<std::uint32_t> numbers;
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::string error;
        const auto number = parseNumber(words[i], error);
        if (!number)
            return refuse(std::move(error));
        numbers.push_back(*number);
    }
    if (command.kind == CommandKind::setAll) {
        command.rpms = std::move(numbers);
    } else {
        command.fanId = numbers[0];
        if (command.kind == CommandKind::setFan)
            command.rpms = {numbers[1]};
    }
    return {command, {}};
}
