#include "ReadingsCache.h"

#include "SysfsAttribute.h"

#include <unistd.h>

namespace {

constexpr auto rescanEvery = std::chrono::minutes(1);
const CollectOptions serveOptions{.includeNvml = true, .recordPaths = true};

int keep(const std::string& path) {
    return path.empty() ? -1 : openAttribute(path);
}

} // namespace

ReadingsCache::ReadingsCache(const SysfsTree& tree) : tree_(tree) {}

ReadingsCache::~ReadingsCache() {
    closeAll();
}

SensorReadings ReadingsCache::read() {
    const bool stale = scans_ == 0 || std::chrono::steady_clock::now() - scannedAt_ > rescanEvery ||
                       hwmonEntries() != entries_;
    if (stale || !refresh())
        rescan();
    return assembleSensors(scan_, tree_, serveOptions);
}

void ReadingsCache::rescan() {
    closeAll();
    entries_ = hwmonEntries();
    scan_ = scanSensors(tree_, serveOptions);
    scannedAt_ = std::chrono::steady_clock::now();
    ++scans_;
    for (HwmonChip& chip : scan_.chips) {
        for (HwmonTemperature& t : chip.temperatures)
            values_.push_back(
                {keep(t.inputPath), &t.milliCelsius, lowestMilliCelsius, highestMilliCelsius});
        for (HwmonFan& fan : chip.fans) {
            values_.push_back({keep(fan.inputPath), &fan.rpm, 0, highestRpm});
            if (fan.targetRpm)
                targets_.push_back({keep(fan.targetPath), &fan.targetRpm});
        }
        if (!chip.runtimeStatusPath.empty())
            gpuStatuses_.push_back(keep(chip.runtimeStatusPath));
    }
    for (ThermalZone& zone : scan_.zones)
        values_.push_back(
            {keep(zone.tempPath), &zone.milliCelsius, lowestMilliCelsius, highestMilliCelsius});
}

bool ReadingsCache::refresh() {
    for (const KeptValue& kept : values_) {
        const auto value = kept.fd >= 0 ? readAttributeInteger(kept.fd) : std::nullopt;
        if (!value || *value < kept.lowest || *value > kept.highest)
            return false;
        *kept.value = *value;
    }
    for (const KeptOptional& kept : targets_) {
        const auto value = kept.fd >= 0 ? readAttributeInteger(kept.fd) : std::nullopt;
        if (!value || *value < 0 || *value > highestRpm)
            return false;
        *kept.value = *value;
    }
    for (const int fd : gpuStatuses_) {
        const auto status = fd >= 0 ? readAttributeText(fd) : std::nullopt;
        if (status == "suspended" || status == "suspending")
            return false; // the next scan leaves it asleep
    }
    return true;
}

void ReadingsCache::closeAll() {
    for (const KeptValue& kept : values_) {
        if (kept.fd >= 0)
            ::close(kept.fd);
    }
    for (const KeptOptional& kept : targets_) {
        if (kept.fd >= 0)
            ::close(kept.fd);
    }
    for (const int fd : gpuStatuses_) {
        if (fd >= 0)
            ::close(fd);
    }
    values_.clear();
    targets_.clear();
    gpuStatuses_.clear();
}

std::vector<std::string> ReadingsCache::hwmonEntries() const {
    auto classDir = tree_.openDir("/sys/class/hwmon");
    return classDir ? classDir->names() : std::vector<std::string>();
}
