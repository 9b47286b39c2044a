#pragma once

#include "MenuBarReadings.h"
#include "tray/SensorType.h"

#include <QString>

/// A rate in bytes per second with 1024-based units: "1.5M" from 1048576 up,
/// "1K" from 1024 up, else "1023B".
QString rateText(double bytesPerSecond);

/// The value a tray item shows: "42%", "1.2M", "↓1.2M ↑5K", "65°C", "2400", or "—" when a
/// temperature is not above 0 or the fan stands still. Whole numbers are truncated toward
/// zero; a non-finite reading where a whole number is needed is a fatal error.
QString menuBarValueText(SensorType type, const MenuBarReadings& readings);

/// The widest value text `type` can show ("100%", "100°C", "↓1023K ↑1023K"): what a label
/// beside the icon reserves room for, so the panel does not shift as the value changes.
QString widestValueText(SensorType type);

/// The symbol shown before the value when icons are on ("⚙", "🌡" ...); empty for the
/// combined network item, which has none.
QString menuBarIcon(SensorType type);

/// The item's tooltip: its raw value and value text, "CPU: 42%"; the CPU's adds a line
/// naming the busiest core when there is one.
QString menuBarToolTip(SensorType type, const MenuBarReadings& readings);

/// "Busiest core: CPU 5 · 98%", cores counted from 0 as the kernel names them.
QString busiestCoreText(const BusiestCore& core);
