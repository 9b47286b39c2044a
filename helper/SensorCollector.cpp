#include "SensorCollector.h"

#include "CommandParser.h"

#include "NvmlReader.h"
#include "SensorLabeller.h"
#include "ThermalZoneScanner.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace {

// Keeps the answer far inside a pipe buffer, which the application reads only after exit.
constexpr std::size_t maxTemperatures = 256;
constexpr std::size_t maxFans = 32;
constexpr std::string_view zoneDevicePrefix = "thermal_zone";

// thermal_hwmon names its chip after the zone type, with '-' made '_'.
std::string hwmonNameOfZoneType(std::string type) {
    std::replace(type.begin(), type.end(), '-', '_');
    return type;
}

bool mirrorsThermalZone(const HwmonChip& chip, const std::set<std::string>& zoneChipNames) {
    if (chip.hasDevice)
        return std::string_view(chip.deviceName).substr(0, zoneDevicePrefix.size()) ==
               zoneDevicePrefix;
    return zoneChipNames.count(chip.name) > 0;
}

bool chipOrder(const HwmonChip& a, const HwmonChip& b) {
    const bool aGpu = classifyChip(a.name) == ChipKind::gpu;
    const bool bGpu = classifyChip(b.name) == ChipKind::gpu;
    return std::tie(aGpu, a.devicePath, a.name) < std::tie(bGpu, b.devicePath, b.name);
}

void appendHwmonTemperatures(const HwmonChip& chip, std::vector<TemperatureReading>& out) {
    std::vector<RawTemperature> raw;
    raw.reserve(chip.temperatures.size());
    for (const HwmonTemperature& t : chip.temperatures)
        raw.push_back({t.index, t.label, t.milliCelsius});
    auto labels = labelChipTemperatures(chip.name, raw);
    std::string keyPrefix = "hwmon/";
    keyPrefix.append(chip.name).append("/").append(chip.deviceName).append("/temp");
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (!labels[i])
            continue;
        const HwmonTemperature& t = chip.temperatures[i];
        out.push_back({keyPrefix + std::to_string(t.index), std::move(*labels[i]), t.milliCelsius,
                       t.critMilliCelsius, t.inputPath});
    }
}

// Zones join the list when they stand in for a missing hwmon CPU sensor, or when their
// hwmon mirror was dropped so that each zone is listed once, under its zone key.
void appendThermalZones(const std::vector<ThermalZone>& zones, bool haveCpuSensor,
                        const std::set<std::string>& mirroredChipNames,
                        std::vector<TemperatureReading>& out) {
    std::map<std::string, int> countByType;
    for (const ThermalZone& zone : zones) {
        const int ordinal = countByType[zone.type]++;
        const bool standsInForCpu = isCpuZoneType(zone.type) && !haveCpuSensor;
        if (!standsInForCpu && mirroredChipNames.count(hwmonNameOfZoneType(zone.type)) == 0)
            continue;
        out.push_back({"tz/" + zone.type + "/" + std::to_string(ordinal),
                       labelThermalZone(zone.type, standsInForCpu), zone.milliCelsius,
                       zone.critMilliCelsius, zone.tempPath});
    }
}

// A fan's key travels in daemon commands, so anything a command could not carry (a
// space in a device name, say) becomes '_'; the key stays unique per chip and channel.
std::string fanKey(const HwmonChip& chip, int index) {
    std::string key = "hwmon/";
    key.append(chip.name).append("/").append(chip.deviceName);
    for (char& c : key) {
        if (!isCommandFanKey(std::string_view(&c, 1)))
            c = '_';
    }
    return key.append("/fan").append(std::to_string(index));
}

// A second "CPU Die" (another socket) becomes "CPU Die 2", and so on.
void numberRepeatedLabels(std::vector<TemperatureReading>& temperatures) {
    for (auto reading = temperatures.begin(); reading != temperatures.end(); ++reading) {
        const auto isUsed = [&](const std::string& label) {
            return std::any_of(
                temperatures.begin(), reading,
                [&](const TemperatureReading& earlier) { return earlier.label == label; });
        };
        if (!isUsed(reading->label))
            continue;
        std::string label;
        for (int n = 2; label.empty() || isUsed(label); ++n)
            label = reading->label + " " + std::to_string(n);
        reading->label = std::move(label);
    }
}

} // namespace

SensorScan scanSensors(const SysfsTree& tree, const CollectOptions& options) {
    SensorScan scan;
    scan.chips = scanHwmon(tree, {options.readCriticalTemperatures, options.recordPaths});
    scan.zones = scanThermalZones(tree, options.readCriticalTemperatures);

    std::set<std::string> zoneChipNames;
    for (const ThermalZone& zone : scan.zones)
        zoneChipNames.insert(hwmonNameOfZoneType(zone.type));
    std::erase_if(scan.chips, [&](const HwmonChip& chip) {
        const bool mirror = mirrorsThermalZone(chip, zoneChipNames);
        if (mirror)
            scan.mirroredChipNames.insert(chip.name);
        return mirror;
    });
    std::sort(scan.chips.begin(), scan.chips.end(), chipOrder);
    return scan;
}

SensorReadings collectSensors(const SysfsTree& tree, const CollectOptions& options) {
    return assembleSensors(scanSensors(tree, options), tree, options);
}

SensorReadings assembleSensors(const SensorScan& scan, const SysfsTree& tree,
                               const CollectOptions& options) {
    const std::vector<HwmonChip>& chips = scan.chips;
    const std::vector<ThermalZone>& zones = scan.zones;
    const std::set<std::string>& mirroredChipNames = scan.mirroredChipNames;
    SensorReadings readings;
    for (const HwmonChip& chip : chips)
        appendHwmonTemperatures(chip, readings.temperatures);
    const bool haveCpuSensor =
        std::any_of(readings.temperatures.begin(), readings.temperatures.end(),
                    [](const TemperatureReading& t) { return isCpuLabel(t.label); });
    appendThermalZones(zones, haveCpuSensor, mirroredChipNames, readings.temperatures);
    if (options.includeNvml) {
        for (const NvmlTemperature& gpu : readNvmlTemperatures(tree)) {
            if (gpu.milliCelsius >= minimumGpuMilliCelsius)
                readings.temperatures.push_back(
                    {"nvml/" + gpu.busId, "GPU", gpu.milliCelsius, {}, {}});
        }
    }
    if (readings.temperatures.size() > maxTemperatures)
        readings.temperatures.resize(maxTemperatures);
    numberRepeatedLabels(readings.temperatures);

    for (const HwmonChip& chip : chips) {
        for (const HwmonFan& fan : chip.fans) {
            if (readings.fans.size() == maxFans)
                break;
            readings.fans.push_back({static_cast<int>(readings.fans.size()),
                                     fanKey(chip, fan.index), fan.rpm, fan.minRpm, fan.maxRpm,
                                     fan.targetRpm, fan.control});
        }
    }
    return readings;
}
