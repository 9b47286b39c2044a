#pragma once

#include "settings/Enumerations.h"

#include <QString>

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

/// The named symbol of a kind ("cpu", "memorychip", "fan" ...): beside its title in the
/// popovers, and its tray picture when the value text stands beside the icon.
QString sensorSymbolName(SensorType type);

/// The tray item's identity on the desktop's bus, stable across runs so hosts can
/// remember where the user put it: "vorlune-cpu", and "vorlune" for the main item.
QString trayItemId(std::optional<SensorType> type);
/// The tray item's name for hosts and screen readers: "Vorlune CPU", "Vorlune".
QString trayItemTitle(std::optional<SensorType> type);

/// The type at `index` in declaration order, or nullopt outside 0...8.
std::optional<SensorType> sensorTypeAt(int index);
