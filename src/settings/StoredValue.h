#pragma once

#include <optional>
#include <string>
#include <string_view>

// An INI file keeps no types: every value comes back as text, so each type is
// read strictly from that text instead of through QVariant's lenient casts
// (which would turn "abc" into true).

/// Exactly "true" or "false".
std::optional<bool> parseStoredBool(std::string_view text);
/// A finite decimal number ("2", "-0.5", "1e+20"); no blanks, no hex, no inf or nan.
std::optional<double> parseStoredDouble(std::string_view text);
/// A decimal integer with an optional sign, nothing else.
std::optional<long long> parseStoredInteger(std::string_view text);

std::string formatStoredBool(bool value);
/// The shortest text that parses back to exactly `value`.
std::string formatStoredDouble(double value);
