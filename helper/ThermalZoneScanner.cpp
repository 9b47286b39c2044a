#include "ThermalZoneScanner.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view zonePrefix = "thermal_zone";
constexpr int maxTripPoints = 32;

std::optional<int> zoneNumber(std::string_view entry) {
    if (entry.substr(0, zonePrefix.size()) != zonePrefix)
        return std::nullopt;
    entry.remove_prefix(zonePrefix.size());
    int number = 0;
    const auto [end, error] = std::from_chars(entry.data(), entry.data() + entry.size(), number);
    if (error != std::errc() || end != entry.data() + entry.size())
        return std::nullopt;
    return number;
}

std::optional<long long> criticalTrip(const SysfsDir& zoneDir) {
    for (int trip = 0; trip < maxTripPoints; ++trip) {
        const std::string base = "trip_point_" + std::to_string(trip);
        const auto type = zoneDir.readText(base + "_type");
        if (!type)
            break;
        if (*type == "critical")
            return zoneDir.readInteger(base + "_temp");
    }
    return std::nullopt;
}

} // namespace

std::vector<ThermalZone> scanThermalZones(const SysfsTree& tree, bool readCriticalTrips) {
    std::vector<ThermalZone> zones;
    auto classDir = tree.openDir("/sys/class/thermal");
    if (!classDir)
        return zones;
    for (const std::string& entry : classDir->names()) {
        const auto number = zoneNumber(entry);
        const auto zoneDir = number ? tree.openDeviceDir(*classDir, entry) : std::nullopt;
        if (!zoneDir)
            continue;
        ThermalZone zone;
        zone.number = *number;
        zone.tempPath = zoneDir->pathOf("temp");
        const auto type = zoneDir->readText("type");
        const auto value = zoneDir->readInteger("temp");
        if (!type || type->empty() || !value)
            continue;
        zone.type = *type;
        zone.milliCelsius = *value;
        if (readCriticalTrips)
            zone.critMilliCelsius = criticalTrip(*zoneDir);
        zones.push_back(std::move(zone));
    }
    std::sort(zones.begin(), zones.end(),
              [](const ThermalZone& a, const ThermalZone& b) { return a.number < b.number; });
    return zones;
}
