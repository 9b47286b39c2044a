#include "ThemePreviewColors.h"

#include "settings/HexColor.h"

#include <initializer_list>

namespace {

const QColor systemBlue(0x00, 0x7A, 0xFF);
const QColor systemGreen(0x34, 0xC7, 0x59);
const QColor systemOrange(0xFF, 0x95, 0x00);
const QColor systemPurple(0xAF, 0x52, 0xDE);
const QColor gray(0x8E, 0x8E, 0x93);
const QColor white(Qt::white);
const QColor black(Qt::black);

std::vector<QColor> fromHex(std::initializer_list<const char*> hexes) {
    std::vector<QColor> colours;
    for (const char* hex : hexes)
        colours.push_back(toQColor(colorFromHex(QString::fromLatin1(hex))));
    return colours;
}

} // namespace

std::vector<QColor> themePreviewColors(ThemePreset preset) {
    switch (preset) {
    case ThemePreset::colorful:
        return {systemBlue, systemGreen, systemOrange, systemPurple};
    case ThemePreset::mono:
        return {gray, white, gray};
    case ThemePreset::monoLight:
        return {black, gray, black};
    case ThemePreset::monoDark:
        return {white, gray, white};
    case ThemePreset::pastel:
        return fromHex({"A2D2FF", "CAFFBF", "FFD6A5"});
    case ThemePreset::neon:
        return fromHex({"00F0FF", "39FF14", "FF00FF"});
    case ThemePreset::ocean:
        return fromHex({"0077B6", "00B4D8", "CAF0F8"});
    case ThemePreset::midnight:
        return fromHex({"6C63FF", "4ECDC4", "C44569"});
    }
    return {};
}
