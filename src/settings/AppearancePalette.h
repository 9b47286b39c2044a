#pragma once

#include <QPalette>

/// The Fusion style's light or dark palette, applied because Qt does not follow
/// the desktop's dark setting by itself.
QPalette appearancePalette(bool dark);
