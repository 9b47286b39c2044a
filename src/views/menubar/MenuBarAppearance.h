#pragma once

#include "settings/Enumerations.h"

#include <QColor>

/// The settings one tray item is drawn with: its effective style and the shared
/// look of every item. Colours are already parsed from their hex settings.
struct MenuBarAppearance {
    PersistentStyle style = PersistentStyle::graphAndText;
    bool showIcons = true;
    double graphWidth = 40.0;  ///< sparkline width in points; also its sample count
    double graphHeight = 18.0; ///< sparkline height and ring gauge size in points
    QColor cpuColor{0x00, 0x7A, 0xFF};
    QColor memoryColor{0x34, 0xC7, 0x59};
    QColor diskColor{0xFF, 0x95, 0x00};
    QColor networkColor{0xAF, 0x52, 0xDE};
    QColor temperatureColor{0xFF, 0x3B, 0x30};
    QColor fanColor{0x5A, 0xC8, 0xFA};
};
