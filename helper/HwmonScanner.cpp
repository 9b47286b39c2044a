#include "HwmonScanner.h"

#include "SensorLabeller.h"
#include "SysfsAttribute.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace {

using AttributeMap = std::map<std::string, std::string, std::less<>>; // name -> path

constexpr long long lowestMilliCelsius = -273150;
constexpr long long highestMilliCelsius = 1000000;
constexpr long long highestRpm = 1000000;

void addAttributes(AttributeMap& attributes, const std::string& dir) {
    for (const std::string& name : SysfsTree::list(dir)) {
        if (isAllowedAttribute(name))
            attributes.emplace(name, dir + "/" + name);
    }
}

// Drivers registered the old way keep every attribute, "name" included, on the device
// and leave the hwmon directory empty.
AttributeMap collectAttributes(const std::string& chipDir,
                               const std::optional<std::string>& deviceDir) {
    AttributeMap attributes;
    addAttributes(attributes, chipDir);
    if (deviceDir && attributes.count("name") == 0)
        addAttributes(attributes, *deviceDir);
    return attributes;
}

std::optional<std::string> pathOf(const AttributeMap& attributes, const std::string& name) {
    const auto found = attributes.find(name);
    if (found == attributes.end())
        return std::nullopt;
    return found->second;
}

std::optional<long long> readInRange(const AttributeMap& attributes, const std::string& name,
                                     long long lowest, long long highest) {
    const auto path = pathOf(attributes, name);
    if (!path)
        return std::nullopt;
    const auto value = readAttributeInteger(*path);
    if (!value || *value < lowest || *value > highest)
        return std::nullopt;
    return value;
}

// Sorted N of every "<prefix>N_input".
std::vector<int> inputIndices(const AttributeMap& attributes, std::string_view prefix) {
    std::vector<int> indices;
    for (const auto& [name, path] : attributes) {
        std::string_view rest = name;
        if (rest.substr(0, prefix.size()) != prefix)
            continue;
        rest.remove_prefix(prefix.size());
        int index = 0;
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), index);
        if (error == std::errc() &&
            std::string_view(end, rest.data() + rest.size() - end) == "_input")
            indices.push_back(index);
    }
    std::sort(indices.begin(), indices.end());
    return indices;
}

std::vector<HwmonTemperature> readTemperatures(const AttributeMap& attributes,
                                               const HwmonScanOptions& options) {
    std::vector<HwmonTemperature> temperatures;
    for (int index : inputIndices(attributes, "temp")) {
        const std::string base = "temp" + std::to_string(index);
        const auto value =
            readInRange(attributes, base + "_input", lowestMilliCelsius, highestMilliCelsius);
        if (!value)
            continue;
        HwmonTemperature temperature;
        temperature.index = index;
        temperature.milliCelsius = *value;
        temperature.inputPath = *pathOf(attributes, base + "_input");
        if (const auto label = pathOf(attributes, base + "_label"))
            temperature.label = readAttributeText(*label).value_or("");
        if (options.readCriticalTemperatures)
            temperature.critMilliCelsius =
                readInRange(attributes, base + "_crit", lowestMilliCelsius, highestMilliCelsius);
        temperatures.push_back(std::move(temperature));
    }
    return temperatures;
}

FanControlPaths findControl(const AttributeMap& attributes, int index) {
    const std::string fan = "fan" + std::to_string(index);
    const std::string pwm = "pwm" + std::to_string(index);
    if (const auto duty = pathOf(attributes, pwm))
        return {FanControlKind::pwm, pathOf(attributes, pwm + "_enable").value_or(""), *duty};
    const auto output = pathOf(attributes, fan + "_output");
    const auto manual = pathOf(attributes, fan + "_manual");
    if (output && manual)
        return {FanControlKind::rpmOutput, *manual, *output};
    if (const auto target = pathOf(attributes, fan + "_target"))
        return {FanControlKind::rpmTarget, "", *target};
    return {};
}

std::vector<HwmonFan> readFans(const AttributeMap& attributes) {
    std::vector<HwmonFan> fans;
    for (int index : inputIndices(attributes, "fan")) {
        const std::string base = "fan" + std::to_string(index);
        const auto rpm = readInRange(attributes, base + "_input", 0, highestRpm);
        // A header that reports a fault, is switched off, or cannot be read is no fan.
        if (!rpm || readInRange(attributes, base + "_fault", 0, 1) == 1 ||
            readInRange(attributes, base + "_enable", 0, 1) == 0)
            continue;
        HwmonFan fan;
        fan.index = index;
        fan.rpm = *rpm;
        fan.minRpm = readInRange(attributes, base + "_min", 0, highestRpm).value_or(0);
        fan.maxRpm = readInRange(attributes, base + "_max", 1, highestRpm);
        auto target = readInRange(attributes, base + "_target", 0, highestRpm);
        if (!target)
            target = readInRange(attributes, base + "_output", 0, highestRpm);
        fan.targetRpm = target.value_or(0);
        fan.control = findControl(attributes, index);
        fans.push_back(std::move(fan));
    }
    return fans;
}

bool isRuntimeActive(const SysfsTree& tree, const std::optional<std::string>& deviceDir) {
    if (!deviceDir)
        return false;
    const auto powerDir = tree.resolveDeviceDir(*deviceDir + "/power");
    return powerDir && readAttributeText(*powerDir + "/runtime_status") == "active";
}

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string_view parentOf(std::string_view path) {
    return path.substr(0, path.rfind('/'));
}

} // namespace

std::vector<HwmonChip> scanHwmon(const SysfsTree& tree, const HwmonScanOptions& options) {
    std::vector<HwmonChip> chips;
    const std::string classDir = tree.path("/sys/class/hwmon");
    for (const std::string& entry : SysfsTree::list(classDir)) {
        const auto chipDir = tree.resolveDeviceDir(classDir + "/" + entry);
        if (!chipDir)
            continue;
        const auto deviceDir = tree.resolveDeviceDir(*chipDir + "/device");
        const AttributeMap attributes = collectAttributes(*chipDir, deviceDir);
        const auto namePath = pathOf(attributes, "name");
        const auto name = namePath ? readAttributeText(*namePath) : std::nullopt;
        if (!name || name->empty())
            continue;
        if (classifyChip(*name) == ChipKind::gpu && !isRuntimeActive(tree, deviceDir))
            continue;

        HwmonChip chip;
        chip.name = *name;
        chip.hasDevice = deviceDir.has_value();
        chip.devicePath = tree.withoutRoot(deviceDir ? *deviceDir : parentOf(*chipDir));
        chip.deviceName = deviceDir ? std::string(lastComponent(*deviceDir)) : "virtual";
        chip.temperatures = readTemperatures(attributes, options);
        chip.fans = readFans(attributes);
        chips.push_back(std::move(chip));
    }
    return chips;
}
