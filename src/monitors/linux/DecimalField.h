#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

/// Splits off the next run of non-blank characters from `text`.
inline std::string_view nextField(std::string_view& text) {
    const auto start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        text = {};
        return {};
    }
    text.remove_prefix(start);
    const auto end = text.find_first_of(" \t");
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    return field;
}

/// A whole field of decimal digits as an unsigned 64-bit value, or nullopt.
inline std::optional<std::uint64_t> parseUnsigned(std::string_view field) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (field.empty() || error != std::errc() || end != field.data() + field.size())
        return std::nullopt;
    return value;
}

/// Calls `onLine` for each line of `text` (without its line feed).
template <typename Function> void forEachLine(std::string_view text, Function&& onLine) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        onLine(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
}
