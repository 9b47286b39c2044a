#include "settings/HexColor.h"

#include <QColor>
#include <cctype>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

// Test names from the rows' reasons, so a failure names the contract line.
template <typename Case> std::string caseName(const testing::TestParamInfo<Case>& info) {
    std::string name;
    bool upper = true;
    for (const char* c = info.param.why; *c; ++c) {
        if (std::isalnum(static_cast<unsigned char>(*c))) {
            name += upper ? char(std::toupper(static_cast<unsigned char>(*c))) : *c;
            upper = false;
        } else {
            upper = true;
        }
    }
    return name;
}

struct HexCase {
    const char* why;
    QString text;
    int red, green, blue; // expected bytes; the components are byte / 255.0
};

void PrintTo(const HexCase& c, std::ostream* os) {
    *os << c.why;
}

class ColorFromHexTable : public testing::TestWithParam<HexCase> {};

TEST_P(ColorFromHexTable, ParsesToOpaqueSRGB) {
    const HexCase& c = GetParam();
    const Color expected{{c.red / 255.0, c.green / 255.0, c.blue / 255.0, 1.0}};
    EXPECT_EQ(colorFromHex(c.text).components, expected.components) << c.why;
}

INSTANTIATE_TEST_SUITE_P(
    Contract, ColorFromHexTable,
    testing::Values(
        HexCase{"plain six digits", "FF9500", 255, 149, 0},
        HexCase{"leading # trimmed", "#FF9500", 255, 149, 0},
        HexCase{"blanks around trimmed", "  FF9500 \t\n", 255, 149, 0},
        HexCase{"punctuation at both ends trimmed", "#FF9500;", 255, 149, 0},
        HexCase{"symbol at the end trimmed", QString::fromUtf8("FF9500\u2713"), 255, 149, 0},
        HexCase{"lower case", "ff9500", 255, 149, 0},
        HexCase{"each channel in its place", "00FF00", 0, 255, 0},
        HexCase{"three-digit shorthand is white", "fff", 255, 255, 255},
        HexCase{"empty is white", "", 255, 255, 255},
        HexCase{"only non-alphanumerics is white", "#;", 255, 255, 255},
        HexCase{"eight digits with alpha is white", "FF950080", 255, 255, 255},
        HexCase{"seven digits is white", "FF95001", 255, 255, 255},
        HexCase{"six non-hex characters scan as 0: black", "ZZZZZZ", 0, 0, 0},
        HexCase{"scanning stops at the first non-hex character", "FFZZZZ", 0, 0, 255},
        HexCase{"a blank inside is kept and stops the scan", "FF 500", 0, 0, 255},
        HexCase{"0x prefix counts towards the six", "0x00FF", 0, 0, 255},
        HexCase{"upper-case prefix", "0X00ff", 0, 0, 255},
        HexCase{"a Unicode letter is not trimmed", QString::fromUtf8("\u00e9FF000"), 0, 0, 0},
        HexCase{"a digit of another script is not trimmed", QString::fromUtf8("\u0663FF950"), 0, 0,
                0},
        HexCase{"a letter outside the BMP is one character", QString::fromUtf8("\U0001D400BCDEF"),
                0, 0, 0},
        HexCase{"an accented letter is one character", QString::fromUtf8("0000F\u0301F"), 0, 0,
                15}),
    caseName<HexCase>);

struct FormatCase {
    const char* why;
    std::vector<double> components;
    const char* hex;
};

void PrintTo(const FormatCase& c, std::ostream* os) {
    *os << c.why;
}

class HexFromColorTable : public testing::TestWithParam<FormatCase> {};

TEST_P(HexFromColorTable, FormatsTruncatedComponents) {
    const FormatCase& c = GetParam();
    EXPECT_EQ(hexFromColor(Color{c.components}).toStdString(), c.hex) << c.why;
}

INSTANTIATE_TEST_SUITE_P(
    Contract, HexFromColorTable,
    testing::Values(
        FormatCase{"pure red", {1.0, 0.0, 0.0}, "FF0000"},
        FormatCase{"alpha is never written", {1.0, 0.0, 0.0, 0.25}, "FF0000"},
        FormatCase{"truncation, not rounding", {0.5, 0.999, 0.0039}, "7FFE00"},
        FormatCase{"towards zero for a small negative", {-0.001, 0.0, 0.0}, "000000"},
        FormatCase{"one component is red only", {1.0}, "FF0000"},
        FormatCase{"grey with alpha puts alpha in green", {0.5, 1.0}, "7FFF00"},
        FormatCase{"no components count as white", {}, "FFFFFF"},
        FormatCase{
            "more than four components use the first three", {0.2, 0.4, 0.6, 0.8, 0.9}, "336699"},
        FormatCase{"a value over 255 gives three digits", {1.01, 2.0, 0.0}, "1011FE00"},
        FormatCase{"a negative value prints as %02X prints it", {-0.5, 0.0, 0.0}, "FFFFFF810000"},
        FormatCase{"an unused alpha may be anything", {0.0, 0.0, 0.0, std::nan("")}, "000000"}),
    caseName<FormatCase>);

TEST(HexFromColor, NonFiniteOrOutOfRangeComponentIsFatal) {
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(hexFromColor(Color{{std::nan("")}}), "hexFromColor: red component");
    EXPECT_DEATH(hexFromColor(Color{{0.0, inf}}), "hexFromColor: green component");
    EXPECT_DEATH(hexFromColor(Color{{0.0, 0.0, -inf}}), "hexFromColor: blue component");
    // 1e17 * 255 lies beyond 2^63.
    EXPECT_DEATH(hexFromColor(Color{{1e17, 0.0, 0.0}}), "hexFromColor: red component");
}

std::string byteHex(int red, int green, int blue) {
    char text[8];
    std::snprintf(text, sizeof text, "%02X%02X%02X", red, green, blue);
    return text;
}

// Every byte value must survive parse -> format, and pick -> format, despite the
// truncation: an off-by-one here would creep a colour down one step per edit.
TEST(ColorRoundTrip, EveryByteValueSurvivesHexAndPicker) {
    for (int v = 0; v < 256; ++v) {
        const int other = 255 - v;
        const std::string hex = byteHex(v, other, v / 2);
        EXPECT_EQ(hexFromColor(colorFromHex(QString::fromStdString(hex))).toStdString(), hex);
        EXPECT_EQ(hexFromColor(colorFromQColor(QColor(v, other, v / 2))).toStdString(), hex);
    }
}

TEST(ColorRoundTrip, PickerColourInOtherSpacesIsTakenAsRGB) {
    EXPECT_EQ(hexFromColor(colorFromQColor(QColor::fromHsv(120, 255, 255))), "00FF00");
    EXPECT_EQ(colorFromQColor(QColor(255, 0, 0, 0)).components,
              (std::vector<double>{1.0, 0.0, 0.0, 0.0}));
}

TEST(ColorToQColor, EachComponentCountDraws) {
    EXPECT_EQ(toQColor(Color{{}}), QColor(Qt::white));
    EXPECT_EQ(toQColor(Color{{0.0}}), QColor(Qt::black));
    EXPECT_EQ(toQColor(Color{{1.0, 0.0}}).alpha(), 0);
    EXPECT_EQ(toQColor(colorFromHex(u"FF9500")), QColor(255, 149, 0));
    EXPECT_EQ(toQColor(Color{{0.0, 0.0, 1.0, 0.5}}).blue(), 255);
}

} // namespace
