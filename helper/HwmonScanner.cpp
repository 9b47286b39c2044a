#include "HwmonScanner.h"

#include "SensorLabeller.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

// The files of tempN, and of fanN with its pwmN, by suffix; a channel's files are
// found by position, so reading a chip needs no lookups by name.
constexpr std::string_view tempSuffixes[] = {"_input", "_label", "_crit"};
enum TempFile { tempInput, tempLabel, tempCrit, tempFileCount };
constexpr std::string_view fanSuffixes[] = {"_input", "_min",    "_max",    "_target",
                                            "_fault", "_enable", "_output", "_manual"};
constexpr std::string_view pwmSuffixes[] = {"", "_enable"};
enum FanFile {
    fanInput,
    fanMin,
    fanMax,
    fanTarget,
    fanFault,
    fanEnable,
    fanOutput,
    fanManual,
    pwmValue,
    pwmEnable,
    fanFileCount
};

// Each file of one numbered channel with the directory that holds it: the chip's, or
// for drivers registered the old way, its device's. nullptr where there is none.
template <std::size_t fileCount> struct Channel {
    int index = 0;
    std::array<const SysfsDir*, fileCount> dirs{};
};
using TempChannel = Channel<tempFileCount>;
using FanChannel = Channel<fanFileCount>;

struct ChipFiles {
    const SysfsDir* name = nullptr;
    std::vector<TempChannel> temperatures;
    std::vector<FanChannel> fans;
};

template <std::size_t fileCount>
void place(std::vector<Channel<fileCount>>& channels, int index, std::size_t file,
           const SysfsDir* dir) {
    auto found = std::find_if(channels.begin(), channels.end(),
                              [index](const auto& channel) { return channel.index == index; });
    if (found == channels.end()) {
        channels.push_back({index, {}});
        found = channels.end() - 1;
    }
    // What the chip directory holds wins over its device's.
    if (found->dirs[file] == nullptr)
        found->dirs[file] = dir;
}

// "<prefix>N<suffix>": N and the position of the suffix in `suffixes`.
template <std::size_t suffixCount>
std::optional<std::pair<int, std::size_t>>
parseIndexed(std::string_view name, std::string_view prefix,
             const std::string_view (&suffixes)[suffixCount]) {
    if (name.substr(0, prefix.size()) != prefix)
        return std::nullopt;
    name.remove_prefix(prefix.size());
    // Only the kernel's own spelling of N, so the name rebuilt from N is this file's.
    if (name.empty() || name.front() < '0' || name.front() > '9' ||
        (name.front() == '0' && name.size() > 1 && name[1] >= '0' && name[1] <= '9'))
        return std::nullopt;
    int index = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), index);
    if (error != std::errc())
        return std::nullopt;
    const std::string_view suffix(end, static_cast<std::size_t>(name.data() + name.size() - end));
    for (std::size_t i = 0; i < suffixCount; ++i) {
        if (suffix == suffixes[i])
            return std::pair{index, i};
    }
    return std::nullopt;
}

void addFiles(ChipFiles& files, SysfsDir& dir) {
    dir.forEachName([&](std::string_view name) {
        if (name == "name") {
            if (files.name == nullptr)
                files.name = &dir;
        } else if (const auto temp = parseIndexed(name, "temp", tempSuffixes)) {
            place(files.temperatures, temp->first, temp->second, &dir);
        } else if (const auto fan = parseIndexed(name, "fan", fanSuffixes)) {
            place(files.fans, fan->first, fan->second, &dir);
        } else if (const auto pwm = parseIndexed(name, "pwm", pwmSuffixes)) {
            place(files.fans, pwm->first, pwmValue + pwm->second, &dir);
        }
    });
}

// Drivers registered the old way keep every attribute, "name" included, on the device
// and leave the hwmon directory empty.
ChipFiles collectFiles(SysfsDir& chipDir, std::optional<SysfsDir>& deviceDir) {
    ChipFiles files;
    addFiles(files, chipDir);
    if (deviceDir && files.name == nullptr)
        addFiles(files, *deviceDir);
    const auto byIndex = [](const auto& a, const auto& b) { return a.index < b.index; };
    std::sort(files.temperatures.begin(), files.temperatures.end(), byIndex);
    std::sort(files.fans.begin(), files.fans.end(), byIndex);
    return files;
}

// "<prefix><index><suffix>", short enough to stay in the string's own buffer.
std::string attributeName(std::string_view prefix, int index, std::string_view suffix) {
    char digits[12];
    const auto end = std::to_chars(digits, digits + sizeof digits, index).ptr;
    std::string name;
    name.reserve(prefix.size() + static_cast<std::size_t>(end - digits) + suffix.size());
    name.append(prefix).append(digits, end).append(suffix);
    return name;
}

std::string fileName(const TempChannel& channel, std::size_t file) {
    return attributeName("temp", channel.index, tempSuffixes[file]);
}

std::string fileName(const FanChannel& channel, std::size_t file) {
    if (file >= pwmValue)
        return attributeName("pwm", channel.index, pwmSuffixes[file - pwmValue]);
    return attributeName("fan", channel.index, fanSuffixes[file]);
}

template <typename ChannelType>
std::optional<std::string> pathOf(const ChannelType& channel, std::size_t file) {
    const SysfsDir* dir = channel.dirs[file];
    if (dir == nullptr)
        return std::nullopt;
    return dir->pathOf(fileName(channel, file));
}

template <typename ChannelType>
std::optional<long long> readInRange(const ChannelType& channel, std::size_t file, long long lowest,
                                     long long highest) {
    const SysfsDir* dir = channel.dirs[file];
    if (dir == nullptr)
        return std::nullopt;
    const auto value = dir->readInteger(fileName(channel, file));
    if (!value || *value < lowest || *value > highest)
        return std::nullopt;
    return value;
}

std::vector<HwmonTemperature> readTemperatures(const ChipFiles& files,
                                               const HwmonScanOptions& options) {
    std::vector<HwmonTemperature> temperatures;
    for (const TempChannel& channel : files.temperatures) {
        const auto value = readInRange(channel, tempInput, lowestMilliCelsius, highestMilliCelsius);
        if (!value)
            continue;
        HwmonTemperature temperature;
        temperature.index = channel.index;
        temperature.milliCelsius = *value;
        if (options.recordPaths)
            temperature.inputPath = *pathOf(channel, tempInput);
        if (const SysfsDir* labelDir = channel.dirs[tempLabel])
            temperature.label = labelDir->readText(fileName(channel, tempLabel)).value_or("");
        if (options.readCriticalTemperatures)
            temperature.critMilliCelsius =
                readInRange(channel, tempCrit, lowestMilliCelsius, highestMilliCelsius);
        temperatures.push_back(std::move(temperature));
    }
    return temperatures;
}

FanControlPaths findControl(const FanChannel& channel) {
    if (const auto duty = pathOf(channel, pwmValue))
        return {FanControlKind::pwm, pathOf(channel, pwmEnable).value_or(""), *duty};
    const auto output = pathOf(channel, fanOutput);
    const auto manual = pathOf(channel, fanManual);
    if (output && manual)
        return {FanControlKind::rpmOutput, *manual, *output};
    if (const auto target = pathOf(channel, fanTarget))
        return {FanControlKind::rpmTarget, "", *target};
    return {};
}

std::vector<HwmonFan> readFans(const ChipFiles& files, const HwmonScanOptions& options) {
    std::vector<HwmonFan> fans;
    for (const FanChannel& channel : files.fans) {
        const auto rpm = readInRange(channel, fanInput, 0, highestRpm);
        // A header that reports a fault, is switched off, or cannot be read is no fan.
        if (!rpm || readInRange(channel, fanFault, 0, 1) == 1 ||
            readInRange(channel, fanEnable, 0, 1) == 0)
            continue;
        HwmonFan fan;
        fan.index = channel.index;
        fan.rpm = *rpm;
        fan.minRpm = readInRange(channel, fanMin, 0, highestRpm);
        fan.maxRpm = readInRange(channel, fanMax, 1, highestRpm);
        auto target = readInRange(channel, fanTarget, 0, highestRpm);
        const std::size_t targetFile = target ? fanTarget : fanOutput;
        if (!target)
            target = readInRange(channel, fanOutput, 0, highestRpm);
        fan.targetRpm = target;
        if (options.recordPaths) {
            fan.control = findControl(channel);
            fan.inputPath = pathOf(channel, fanInput).value_or("");
            if (target)
                fan.targetPath = pathOf(channel, targetFile).value_or("");
        }
        fans.push_back(std::move(fan));
    }
    return fans;
}

// Only a device that is powered down (or going down) would be woken by a read; "active",
// "unsupported" (no runtime power management) and a device without a power folder are
// read as they are.
bool isRuntimeSuspended(const SysfsTree& tree, const std::optional<SysfsDir>& deviceDir) {
    if (!deviceDir)
        return false;
    const auto powerDir = tree.openDeviceDir(*deviceDir, "power");
    const auto status = powerDir ? powerDir->readText("runtime_status") : std::nullopt;
    return status == "suspended" || status == "suspending";
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
    auto classDir = tree.openDir("/sys/class/hwmon");
    if (!classDir)
        return chips;
    for (const std::string& entry : classDir->names()) {
        auto chipDir = tree.openDeviceDir(*classDir, entry);
        if (!chipDir)
            continue;
        auto deviceDir = tree.openDeviceDir(*chipDir, "device");
        const ChipFiles files = collectFiles(*chipDir, deviceDir);
        const auto name = files.name ? files.name->readText("name") : std::nullopt;
        if (!name || name->empty())
            continue;
        if (classifyChip(*name) == ChipKind::gpu && isRuntimeSuspended(tree, deviceDir))
            continue;

        HwmonChip chip;
        chip.name = *name;
        chip.hasDevice = deviceDir.has_value();
        chip.devicePath =
            tree.withoutRoot(deviceDir ? deviceDir->path() : parentOf(chipDir->path()));
        chip.deviceName = deviceDir ? std::string(lastComponent(deviceDir->path())) : "virtual";
        chip.temperatures = readTemperatures(files, options);
        chip.fans = readFans(files, options);
        if (options.recordPaths && deviceDir && classifyChip(*name) == ChipKind::gpu)
            chip.runtimeStatusPath = deviceDir->path() + "/power/runtime_status";
        chips.push_back(std::move(chip));
    }
    return chips;
}
