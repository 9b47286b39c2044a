#pragma once

#include "settings/Enumerations.h"

#include <QColor>
#include <vector>

/// The fixed colours of a preset's preview gradient, leading edge first. They
/// stand for the preset and do not follow the user's current colours.
std::vector<QColor> themePreviewColors(ThemePreset preset);
