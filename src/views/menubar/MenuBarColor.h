#pragma once

#include "MenuBarAppearance.h"
#include "MenuBarReadings.h"
#include "tray/SensorType.h"

#include <QColor>

/// The named colours the tray items use where the user's colour settings do not apply.
namespace MenuBarColors {
inline const QColor hot{0xFF, 0x00, 0x00};  ///< temperatures at or above 90 °C
inline const QColor warm{0xFF, 0xA5, 0x00}; ///< temperatures at or above 75 °C
inline const QColor calm{0x34, 0xC7, 0x59}; ///< normal temperatures when the theme colour alarms
inline const QColor gaugeTrack{0x80, 0x80, 0x80}; ///< the ring gauge's track, drawn at alpha 0.3
} // namespace MenuBarColors

/// Red at or above 90 °C, orange at or above 75 °C, else `normal`; a `normal` that could
/// pass for either warning (Colorful's and Neon's reds) gives way to the calm green.
QColor temperatureColor(double celsius, const QColor& normal);

/// The colour of the item's text and graph: its colour setting, or for temperatures the
/// warning colours of `temperatureColor`.
QColor menuBarColor(SensorType type, const MenuBarReadings& readings,
                    const MenuBarAppearance& appearance);
