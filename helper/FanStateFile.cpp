#include "FanStateFile.h"

#include "SysfsAttribute.h"

namespace {

bool isWord(std::string_view text) {
    return !text.empty() && text.find_first_of(" \t\r\n") == std::string_view::npos;
}

std::optional<SavedFanState> parseLine(std::string_view line) {
    const std::size_t first = line.find(' ');
    if (first == std::string_view::npos)
        return std::nullopt;
    const std::size_t second = line.find(' ', first + 1);
    if (second == std::string_view::npos)
        return std::nullopt;
    const std::string_view key = line.substr(0, first);
    const std::string_view mode = line.substr(first + 1, second - first - 1);
    const auto value = parseAttributeInteger(line.substr(second + 1));
    if (!isWord(key) || key.front() != '/' || !value)
        return std::nullopt;
    SavedFanState state{std::string(key), std::nullopt, *value};
    if (mode != "-") {
        state.mode = parseAttributeInteger(mode);
        if (!state.mode)
            return std::nullopt;
    }
    return state;
}

} // namespace

std::string formatFanStates(const std::vector<SavedFanState>& states) {
    std::string text;
    for (const SavedFanState& state : states) {
        if (!isWord(state.key))
            continue;
        text += state.key + ' ' + (state.mode ? std::to_string(*state.mode) : "-") + ' ' +
                std::to_string(state.value) + '\n';
    }
    return text;
}

std::vector<SavedFanState> parseFanStates(std::string_view text) {
    std::vector<SavedFanState> states;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            break; // a last line without its line feed was cut short
        if (auto state = parseLine(text.substr(0, end)))
            states.push_back(std::move(*state));
        text.remove_prefix(end + 1);
    }
    return states;
}
