#pragma once

#include "Enumerations.h"

#include <array>
#include <string_view>

/// The six colours of a preset in the order they are written: cpu, memory, disk,
/// network, temperature, fan. "Mono" is white on a dark appearance and black on a
/// light one; every other preset is fixed.
std::array<std::string_view, 6> themeColorHexes(ThemePreset preset, bool darkAppearance);
