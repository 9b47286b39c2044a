#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// The 51 persistent settings in declaration order. Their stored names and
// defaults live in one table below; nothing else spells a key.
enum class SettingKey {
    appearanceMode,
    displayMode,
    updateInterval,
    showCPU,
    showMemory,
    showDisk,
    showNetwork,
    showTemperature,
    showFan,
    graphWidth,
    graphHeight,
    themePreset,
    persistentDisplayStyle,
    persistShowIcons,
    persistTextPlacement,
    persistCPU,
    persistMemory,
    persistDisk,
    persistNetworkIn,
    persistNetworkOut,
    persistNetwork,
    networkCombined,
    persistCPUTemp,
    persistGPUTemp,
    persistFan,
    styleCPU,
    styleMemory,
    styleDisk,
    styleNetworkIn,
    styleNetworkOut,
    styleNetwork,
    styleCPUTemp,
    styleGPUTemp,
    styleFan,
    cpuColorHex,
    memoryColorHex,
    diskColorHex,
    networkColorHex,
    temperatureColorHex,
    fanColorHex,
    alertCPUTemp,
    alertCPUTempLimit,
    alertCPUTempSeconds,
    alertCPU,
    alertCPULimit,
    alertCPUSeconds,
    alertMemory,
    alertMemorySeconds,
    alertDisk,
    alertDiskLimit,
    alertDiskSeconds,
};

struct SettingDefinition {
    SettingKey key;
    std::string_view name;
    /// The default in its stored text form.
    std::string_view defaultText;
};

inline constexpr std::array<SettingDefinition, 51> settingDefinitions{{
    {SettingKey::appearanceMode, "appearanceMode", "System"},
    {SettingKey::displayMode, "displayMode", "Graph & Text"},
    {SettingKey::updateInterval, "updateInterval", "2.0"},
    {SettingKey::showCPU, "showCPU", "true"},
    {SettingKey::showMemory, "showMemory", "true"},
    {SettingKey::showDisk, "showDisk", "true"},
    {SettingKey::showNetwork, "showNetwork", "true"},
    {SettingKey::showTemperature, "showTemperature", "true"},
    {SettingKey::showFan, "showFan", "true"},
    {SettingKey::graphWidth, "graphWidth", "40.0"},
    {SettingKey::graphHeight, "graphHeight", "18.0"},
    {SettingKey::themePreset, "themePreset", "Colorful"},
    {SettingKey::persistentDisplayStyle, "persistentDisplayStyle", "Graph & Text"},
    {SettingKey::persistShowIcons, "persistShowIcons", "true"},
    {SettingKey::persistTextPlacement, "persistTextPlacement", "Automatic"},
    {SettingKey::persistCPU, "persistCPU", "false"},
    {SettingKey::persistMemory, "persistMemory", "false"},
    {SettingKey::persistDisk, "persistDisk", "false"},
    {SettingKey::persistNetworkIn, "persistNetworkIn", "false"},
    {SettingKey::persistNetworkOut, "persistNetworkOut", "false"},
    {SettingKey::persistNetwork, "persistNetwork", "false"},
    {SettingKey::networkCombined, "networkCombined", "false"},
    {SettingKey::persistCPUTemp, "persistCPUTemp", "false"},
    {SettingKey::persistGPUTemp, "persistGPUTemp", "false"},
    {SettingKey::persistFan, "persistFan", "false"},
    {SettingKey::styleCPU, "styleCPU", ""},
    {SettingKey::styleMemory, "styleMemory", ""},
    {SettingKey::styleDisk, "styleDisk", ""},
    {SettingKey::styleNetworkIn, "styleNetworkIn", ""},
    {SettingKey::styleNetworkOut, "styleNetworkOut", ""},
    {SettingKey::styleNetwork, "styleNetwork", ""},
    {SettingKey::styleCPUTemp, "styleCPUTemp", ""},
    {SettingKey::styleGPUTemp, "styleGPUTemp", ""},
    {SettingKey::styleFan, "styleFan", ""},
    {SettingKey::cpuColorHex, "cpuColorHex", "007AFF"},
    {SettingKey::memoryColorHex, "memoryColorHex", "34C759"},
    {SettingKey::diskColorHex, "diskColorHex", "FF9500"},
    {SettingKey::networkColorHex, "networkColorHex", "AF52DE"},
    {SettingKey::temperatureColorHex, "temperatureColorHex", "FF3B30"},
    {SettingKey::fanColorHex, "fanColorHex", "5AC8FA"},
    {SettingKey::alertCPUTemp, "alertCPUTemp", "false"},
    {SettingKey::alertCPUTempLimit, "alertCPUTempLimit", "90.0"},
    {SettingKey::alertCPUTempSeconds, "alertCPUTempSeconds", "30.0"},
    {SettingKey::alertCPU, "alertCPU", "false"},
    {SettingKey::alertCPULimit, "alertCPULimit", "95.0"},
    {SettingKey::alertCPUSeconds, "alertCPUSeconds", "120.0"},
    {SettingKey::alertMemory, "alertMemory", "false"},
    {SettingKey::alertMemorySeconds, "alertMemorySeconds", "30.0"},
    {SettingKey::alertDisk, "alertDisk", "false"},
    {SettingKey::alertDiskLimit, "alertDiskLimit", "95.0"},
    {SettingKey::alertDiskSeconds, "alertDiskSeconds", "60.0"},
}};

/// The group of the fan override's saved percentages: decimal fan id = percent.
inline constexpr std::string_view fanPercentagesGroup = "fanPercentages";

constexpr const SettingDefinition& settingDefinition(SettingKey key) {
    return settingDefinitions[static_cast<std::size_t>(key)];
}

// The table is indexed by the enumeration, so its rows must stay in that order.
constexpr bool settingTableInOrder() {
    for (std::size_t i = 0; i < settingDefinitions.size(); ++i)
        if (static_cast<std::size_t>(settingDefinitions[i].key) != i)
            return false;
    return true;
}
static_assert(settingTableInOrder());
static_assert(static_cast<std::size_t>(SettingKey::alertDiskSeconds) + 1 ==
              settingDefinitions.size());
