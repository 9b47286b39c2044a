#include "CommandParser.h"

#include <algorithm>

namespace {

constexpr std::size_t maxDigits = 9;
constexpr std::uint32_t maxPercent = 100;

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

std::optional<FanValue> parseFanValue(std::string_view key, std::string_view number,
                                      std::string& error) {
    if (!isCommandFanKey(key)) {
        error = key.empty() ? "missing fan key or extra space" : "not a fan key";
        return std::nullopt;
    }
    const auto value = parseNumber(number, error);
    if (!value)
        return std::nullopt;
    return FanValue{std::string(key), *value};
}

} // namespace

bool isCommandFanKey(std::string_view key) {
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '.' || c == '_' || c == '-' || c == ':' || c == '/' || c == '+';
    };
    return !key.empty() && key.size() <= maxFanKeyBytes &&
           std::all_of(key.begin(), key.end(), allowed);
}

ParsedCommand parseCommand(std::string_view line) {
    if (line.size() > maxCommandLineBytes)
        return refuse("line longer than " + std::to_string(maxCommandLineBytes) + " bytes");
    const std::vector<std::string_view> words = splitOnSpaces(line);
    const std::string_view verb = words.front();
    const std::size_t argumentCount = words.size() - 1;

    Command command;
    std::string error;
    if (verb == "quit" && argumentCount == 0)
        return {command, {}};
    if ((verb == "set-fan" || verb == "set-duty") && argumentCount == 2) {
        command.kind = verb == "set-fan" ? CommandKind::setFan : CommandKind::setDuty;
        const auto fan = parseFanValue(words[1], words[2], error);
        if (!fan)
            return refuse(std::move(error));
        if (command.kind == CommandKind::setDuty && fan->value > maxPercent)
            return refuse("duty above 100 percent");
        command.fans.push_back(*fan);
        return {command, {}};
    }
    if (verb == "fan-auto" && argumentCount == 1) {
        if (!isCommandFanKey(words[1]))
            return refuse(words[1].empty() ? "missing fan key or extra space" : "not a fan key");
        command.kind = CommandKind::fanAuto;
        command.fans.push_back({std::string(words[1]), 0});
        return {command, {}};
    }
    if (verb == "set-all" && argumentCount >= 1) {
        command.kind = CommandKind::setAll;
        for (std::size_t i = 1; i < words.size(); ++i) {
            const std::size_t equals = words[i].find('=');
            if (equals == std::string_view::npos)
                return refuse("set-all takes <key>=<rpm> pairs");
            const auto fan =
                parseFanValue(words[i].substr(0, equals), words[i].substr(equals + 1), error);
            if (!fan)
                return refuse(std::move(error));
            command.fans.push_back(*fan);
        }
        return {command, {}};
    }
    if (verb == "quit" || verb == "set-fan" || verb == "set-duty" || verb == "set-all" ||
        verb == "fan-auto")
        return refuse("wrong number of arguments for " + std::string(verb));
    return refuse("unknown command");
}
