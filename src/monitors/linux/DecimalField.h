#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

/// Splits off the next run of non-blank characters from `text`.
inline std::string_view nextField(std::string_view& text) {
    // A plain loop: find_first_of with a two-character set calls memchr once per
    // character, which made the splitting most of what parsing a tick cost.
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    std::size_t start = 0;
    while (start < text.size() && blank(text[start]))
        ++start;
    std::size_t end = start;
    while (end < text.size() && !blank(text[end]))
        ++end;
    const std::string_view field = text.substr(start, end - start);
    text.remove_prefix(end);
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
