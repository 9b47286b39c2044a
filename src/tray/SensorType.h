#pragma once

#include "settings/Enumerations.h"

#include <optional>
#include <string_view>

/// The kinds of extra tray item. Declaration order is significant: it is the order of
/// `allCases<SensorType>()`, and an item's index in that order is its tag.
enum class SensorType { cpu, memory, disk, networkIn, networkOut, network, cpuTemp, gpuTemp, fan };

/// Raw values are the display names (tooltip, window title): `rawValue(SensorType::networkIn)`
/// is "Net ↓". `fromRawValue<SensorType>` and `allCases<SensorType>` come with them.
template <> struct EnumRawValues<SensorType> {
    static constexpr std::array<std::string_view, 9> values{
        "CPU", "Memory", "Disk", "Net ↓", "Net ↑", "Network", "CPU Temp", "GPU Temp", "Fan"};
};

/// The word the settings store takes to look up the item's own display style
/// ("cpu", "networkIn", "cpuTemp" ...); not the raw value.
std::string_view sensorKeyWord(SensorType type);

/// The type's index in declaration order (0...8).
int sensorTypeIndex(SensorType type);

/// The type at `index` in declaration order, or nullopt outside 0...8.
std::optional<SensorType> sensorTypeAt(int index);
