#include "settings/AppearancePalette.h"
#include "settings/Contrast.h"
#include "settings/HexColor.h"
#include "settings/ThemeColors.h"

#include <QColor>
#include <QPalette>
#include <cmath>
#include <gtest/gtest.h>

namespace {

TEST(ColorFromHex, TrimsTheEndsAndTakesExactlySixCharacters) {
    struct Case {
        const char* text;
        int red, green, blue;
    };
    const Case cases[] = {
        {"FF9500", 255, 149, 0},
        {"#ff9500", 255, 149, 0},
        {"  #FF9500; \t\n", 255, 149, 0}, // anything not a letter or digit is trimmed
        {"#fff", 255, 255, 255},          // no shorthand: anything but six characters is white
        {"FF950080", 255, 255, 255},
        {"orange", 0, 0, 0},        // six characters that do not scan as hex: 0
        {"FFZZZZ", 0, 0, 255},      // scanning stops at the first non-hex character
        {"0x00FF", 0, 0, 255},      // the prefix counts towards the six
        {"\u00e9FF000", 0, 0, 0},   // a letter of any script is kept, and is not hex
        {"0000F\u0301F", 0, 0, 15}, // a letter with a combining accent is one character
    };
    for (const Case& c : cases) {
        const Color expected{{c.red / 255.0, c.green / 255.0, c.blue / 255.0, 1.0}};
        EXPECT_EQ(colorFromHex(QString::fromUtf8(c.text)).components, expected.components)
            << '"' << c.text << '"';
    }
}

// Every byte value must survive parse -> format and pick -> format despite the truncation:
// an off-by-one would creep a colour down one step per edit.
TEST(ColorRoundTrip, EveryByteValueSurvivesHexAndPicker) {
    for (int v = 0; v < 256; ++v) {
        const QColor picked(v, 255 - v, v / 2);
        const QString hex = picked.name().mid(1).toUpper();
        EXPECT_EQ(hexFromColor(colorFromHex(hex)), hex);
        EXPECT_EQ(hexFromColor(colorFromQColor(picked)), hex);
        EXPECT_EQ(toQColor(colorFromHex(hex)), picked);
    }
}

// Every theme's colours, and the status colours, as text on the popover's background in
// light and dark: WCAG AA (4.5 : 1) or better, in the colour's own hue.
TEST(Contrast, EveryThemeAndStatusColourReadsAsTextInLightAndDark) {
    for (const bool dark : {false, true}) {
        const QPalette palette = appearancePalette(dark);
        const QColor background = palette.color(QPalette::Window);
        std::vector<QColor> colours = {palette.color(QPalette::WindowText),
                                       palette.color(QPalette::PlaceholderText), QColor(0xFF0000),
                                       QColor(0xFFA500), QColor(0x34C759)};
        for (const ThemePreset preset : allCases<ThemePreset>())
            for (const std::string_view hex : themeColorHexes(preset, dark))
                colours.push_back(toQColor(colorFromHex(QString::fromLatin1(hex))));
        for (const QColor& colour : colours) {
            SCOPED_TRACE(colour.name(QColor::HexArgb).toStdString() + (dark ? " dark" : " light"));
            const QColor shown = readableOn(colour, background);
            EXPECT_GE(contrastRatio(shown, background), 4.5);
            if (colour.hslSaturation() > 20) {
                EXPECT_LE(std::abs(shown.hslHue() - colour.hslHue()), 2);
            }
        }
    }
    EXPECT_DOUBLE_EQ(contrastRatio(Qt::black, Qt::white), 21.0);
}

} // namespace
