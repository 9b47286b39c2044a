#include "StoredValue.h"

#include <charconv>
#include <cmath>

std::optional<bool> parseStoredBool(std::string_view text) {
    if (text == "true")
        return true;
    if (text == "false")
        return false;
    return std::nullopt;
}

std::optional<double> parseStoredDouble(std::string_view text) {
    double value = 0;
    const char* end = text.data() + text.size();
    auto [next, error] = std::from_chars(text.data(), end, value, std::chars_format::general);
    if (error != std::errc() || next != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<long long> parseStoredInteger(std::string_view text) {
    // from_chars takes no plus sign, while a hand-edited "+3" is still an integer.
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    long long value = 0;
    const char* end = text.data() + text.size();
    auto [next, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || next != end)
        return std::nullopt;
    return value;
}

std::string formatStoredBool(bool value) {
    return value ? "true" : "false";
}

std::string formatStoredDouble(double value) {
    char buffer[64];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    if (error != std::errc())
        return "0";
    return std::string(buffer, end);
}
