#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Turns driver labels into the names the application chooses by: only real CPU
// sensors say "CPU", only GPUs say "GPU", so a floating board input can never be
// taken for the CPU temperature or trip the daemon's failsafe.

enum class ChipKind { cpu, appleSmc, gpu, nvme, other };

ChipKind classifyChip(std::string_view chipName);

struct RawTemperature {
    int index = 0;              ///< N of tempN
    std::string_view label;     ///< tempN_label, empty when the chip has none
    long long milliCelsius = 0; ///< tempN_input
};

/// Labels for one chip's temperatures, in the same order; nullopt leaves a sensor out.
std::vector<std::optional<std::string>> labelChipTemperatures(std::string_view chipName,
                                                              const std::vector<RawTemperature>&);

/// Thermal zone types that measure the CPU itself.
bool isCpuZoneType(std::string_view type);

/// "CPU Die" for a CPU zone standing in for missing hwmon CPU sensors, else the type.
std::string labelThermalZone(std::string_view type, bool asCpuDie);

/// GPU readings below this are a powered-down or idle-reporting GPU, not a temperature.
constexpr long long minimumGpuMilliCelsius = 10000;

bool isCpuLabel(std::string_view label);
