#include "settings/StoredValue.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

TEST(StoredValue, BoolIsExactlyTrueOrFalse) {
    EXPECT_EQ(parseStoredBool("true"), true);
    EXPECT_EQ(parseStoredBool("false"), false);
    for (const char* bad : {"TRUE", "True", "1", "0", "yes", "", " true", "false ", "abc"})
        EXPECT_EQ(parseStoredBool(bad), std::nullopt) << '"' << bad << '"';
}

TEST(StoredValue, DoubleIsAFiniteDecimalNumber) {
    const std::pair<const char*, double> good[] = {{"2", 2.0},      {"2.0", 2.0}, {"-0.5", -0.5},
                                                   {"1e+20", 1e20}, {"0.1", 0.1}, {"40", 40.0}};
    for (const auto& [text, value] : good)
        EXPECT_EQ(parseStoredDouble(text), value) << text;
    for (const char* bad :
         {"", "inf", "-inf", "nan", "infinity", "0x10", " 5", "5 ", "5,0", "abc", "1e999", "+"})
        EXPECT_EQ(parseStoredDouble(bad), std::nullopt) << '"' << bad << '"';
}

TEST(StoredValue, IntegerIsDecimalWithOptionalSign) {
    const std::pair<const char*, long long> good[] = {
        {"3", 3}, {"-3", -3}, {"+3", 3}, {"0", 0}, {"9223372036854775807", 9223372036854775807}};
    for (const auto& [text, value] : good)
        EXPECT_EQ(parseStoredInteger(text), value) << text;
    for (const char* bad : {"", "+", "-", "+-3", "3.0", "0x3", " 3", "3 ", "99999999999999999999"})
        EXPECT_EQ(parseStoredInteger(bad), std::nullopt) << '"' << bad << '"';
}

TEST(StoredValue, DoublesFormatShortestAndReadBackExactly) {
    EXPECT_EQ(formatStoredDouble(2.0), "2");
    EXPECT_EQ(formatStoredDouble(0.1), "0.1");
    for (double value : {0.1, 1.0 / 3.0, 1e-300, -123.456, 40.0, 5e20})
        EXPECT_EQ(parseStoredDouble(formatStoredDouble(value)), value);
    EXPECT_EQ(parseStoredBool(formatStoredBool(true)), true);
    EXPECT_EQ(parseStoredBool(formatStoredBool(false)), false);
}

} // namespace
