#pragma once

#include <QFont>

/// The fonts a tray icon's text is drawn in; their sizes are ignored (the text is scaled
/// to fill the icon). Tests pass fonts loaded from known files so pixels do not depend on
/// the machine.
struct TrayIconFonts {
    QFont value; ///< the value text; monospaced so the size does not jump as digits change
    QFont icon;  ///< the symbols ⚙ ⊟ ◉ ↓ ↑ 🌡 ⎈

    /// The system's monospaced font for values, Symbola for icons (monochrome, so the
    /// symbols take the item's colour) with the system font as fallback.
    static TrayIconFonts systemDefault();
};
