#pragma once

#include <QColor>
#include <QString>

/// How full memory is: normal below 70 % used, moderate below 90 %, high from 90 %.
enum class MemoryPressure { normal, moderate, high };

/// The level for a used fraction 0...1 (a value that is not a number counts as normal).
MemoryPressure memoryPressure(double usedFraction);
/// "Normal", "Moderate" or "High".
QString memoryPressureText(MemoryPressure level);
/// Green, orange or red.
QColor memoryPressureColor(MemoryPressure level);
