#include "SensorLabeller.h"

#include <algorithm>
#include <cctype>

namespace {

std::string lowercase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

std::string rawOrIndexName(const RawTemperature& sensor) {
    if (!sensor.label.empty())
        return std::string(sensor.label);
    return "temp" + std::to_string(sensor.index);
}

// Anything not from a CPU driver that would still say "CPU" (nct "CPUTIN" is a board
// thermistor, often floating) is renamed so it never competes with the real CPU.
std::string boardLabel(std::string_view prefix, const RawTemperature& sensor) {
    const std::string raw = rawOrIndexName(sensor);
    std::string label = prefix.empty() ? raw : std::string(prefix) + " " + raw;
    if (lowercase(label).find("cpu") != std::string::npos)
        return "Board sensor (" + lowercase(raw) + ")";
    return label;
}

std::string coretempLabel(const RawTemperature& sensor) {
    if (startsWith(sensor.label, "Package id "))
        return "CPU Die";
    if (startsWith(sensor.label, "Core "))
        return "CPU " + std::string(sensor.label);
    return "CPU " + rawOrIndexName(sensor);
}

std::string amdCpuLabel(const RawTemperature& sensor, bool chipHasTdie) {
    // Tctl carries a fan-control offset on some parts, so it is the die only without Tdie.
    const std::string_view label = sensor.label.empty() ? "Tctl" : sensor.label;
    if (label == "Tdie")
        return "CPU Die";
    if (label == "Tctl")
        return chipHasTdie ? "CPU Tctl" : "CPU Die";
    if (startsWith(label, "Tccd"))
        return "CPU CCD " + std::string(label.substr(4));
    return "CPU " + std::string(label);
}

std::string appleSmcLabel(const RawTemperature& sensor) {
    if (sensor.label == "TC0P")
        return "CPU Proximity";
    if (sensor.label == "TC0D" || sensor.label == "TC0E" || sensor.label == "TC0F")
        return "CPU Die";
    return boardLabel("applesmc", sensor);
}

std::optional<std::string> gpuLabel(std::string_view chipName, const RawTemperature& sensor) {
    if (sensor.milliCelsius < minimumGpuMilliCelsius)
        return std::nullopt;
    if (chipName != "amdgpu" || sensor.label.empty())
        return "GPU";
    if (sensor.label == "edge")
        return "GPU Edge";
    if (sensor.label == "junction")
        return "GPU Hotspot";
    if (sensor.label == "mem")
        return "GPU Memory";
    return "GPU " + std::string(sensor.label);
}

} // namespace

ChipKind classifyChip(std::string_view chipName) {
    if (chipName == "coretemp" || chipName == "k10temp" || chipName == "zenpower")
        return ChipKind::cpu;
    if (chipName == "applesmc")
        return ChipKind::appleSmc;
    if (chipName == "amdgpu" || chipName == "radeon" || chipName == "nouveau")
        return ChipKind::gpu;
    if (chipName == "nvme")
        return ChipKind::nvme;
    return ChipKind::other;
}

std::vector<std::optional<std::string>>
labelChipTemperatures(std::string_view chipName, const std::vector<RawTemperature>& sensors) {
    const bool hasTdie = std::any_of(sensors.begin(), sensors.end(),
                                     [](const RawTemperature& s) { return s.label == "Tdie"; });
    std::vector<std::optional<std::string>> labels;
    labels.reserve(sensors.size());
    for (const RawTemperature& sensor : sensors) {
        switch (classifyChip(chipName)) {
        case ChipKind::cpu:
            labels.emplace_back(chipName == "coretemp" ? coretempLabel(sensor)
                                                       : amdCpuLabel(sensor, hasTdie));
            break;
        case ChipKind::appleSmc:
            labels.emplace_back(appleSmcLabel(sensor));
            break;
        case ChipKind::gpu:
            labels.push_back(gpuLabel(chipName, sensor));
            break;
        case ChipKind::nvme:
            labels.emplace_back(sensor.label.empty() ? "SSD" : "SSD " + std::string(sensor.label));
            break;
        case ChipKind::other:
            labels.emplace_back(boardLabel(chipName, sensor));
            break;
        }
    }
    return labels;
}

bool isCpuZoneType(std::string_view type) {
    return type == "x86_pkg_temp" || type == "cpu-thermal" || type == "cpu_thermal" ||
           type == "soc_thermal";
}

std::string labelThermalZone(std::string_view type, bool asCpuDie) {
    if (asCpuDie)
        return "CPU Die";
    return boardLabel("", RawTemperature{0, type, 0});
}

bool isCpuLabel(std::string_view label) {
    return label.find("CPU") != std::string_view::npos;
}
