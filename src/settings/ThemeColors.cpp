#include "ThemeColors.h"

namespace {
using Row = std::array<std::string_view, 6>;
constexpr Row black{"000000", "000000", "000000", "000000", "000000", "000000"};
constexpr Row white{"FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF"};
} // namespace

std::array<std::string_view, 6> themeColorHexes(ThemePreset preset, bool darkAppearance) {
    switch (preset) {
    case ThemePreset::colorful:
        return {"007AFF", "34C759", "FF9500", "AF52DE", "FF3B30", "5AC8FA"};
    case ThemePreset::mono:
        return darkAppearance ? white : black;
    case ThemePreset::monoLight: // stored and shown as "Mono Dark"
        return black;
    case ThemePreset::monoDark: // stored and shown as "Mono Light"
        return white;
    case ThemePreset::pastel:
        return {"A2D2FF", "CAFFBF", "FFD6A5", "BDB2FF", "FFADAD", "FDFFB6"};
    case ThemePreset::neon:
        return {"00F0FF", "39FF14", "FF6600", "FF00FF", "FF073A", "FFFF00"};
    case ThemePreset::ocean:
        return {"0077B6", "00B4D8", "48CAE4", "90E0EF", "023E8A", "CAF0F8"};
    case ThemePreset::midnight:
        return {"6C63FF", "4ECDC4", "FFE66D", "FF6B6B", "C44569", "574B90"};
    }
    return {"007AFF", "34C759", "FF9500", "AF52DE", "FF3B30", "5AC8FA"};
}
