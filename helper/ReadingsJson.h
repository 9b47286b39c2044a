#pragma once

#include "SensorCollector.h"

#include <string>
#include <string_view>

/// The one-shot answer: {"temperatures":[{"key","label","value"}...],
/// "fans":[{"id","actual","min","max","target"}...]}, "max" left out when unknown.
std::string formatReadingsJson(const SensorReadings& readings);

/// A JSON string literal; bytes outside printable ASCII are escaped or replaced by '?',
/// so whatever a driver names a sensor, the answer stays valid JSON and UTF-8.
std::string jsonString(std::string_view text);

/// Milli-units as an exact decimal: 45500 -> "45.5", -1250 -> "-1.25", 3000 -> "3".
std::string decimalFromMilli(long long milli);
