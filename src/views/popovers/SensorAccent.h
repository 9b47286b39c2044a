#pragma once

#include "tray/SensorType.h"

#include <QColor>
#include <QString>

class AppSettings;

/// A colour setting's hex text as a colour (white for malformed text, as the parser rules).
QColor colorFromSetting(const QString& hex);

/// The theme colour of a kind: CPU, memory, disk, network (all three network kinds),
/// temperature (both temperature kinds) or fan colour setting.
QColor sensorAccentColor(SensorType type, const AppSettings& settings);
