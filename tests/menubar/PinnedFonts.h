#pragma once

#include "views/menubar/TrayIconFonts.h"

#include <optional>

/// DejaVu Sans Mono for values and Symbola for icons, loaded from their files so that
/// measured pixels do not depend on the machine's font configuration. nullopt when a file
/// cannot be loaded.
std::optional<TrayIconFonts> pinnedFonts();
