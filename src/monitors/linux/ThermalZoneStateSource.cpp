#include "ThermalZoneStateSource.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>

namespace {

constexpr long long unset = std::numeric_limits<long long>::max();

std::optional<std::string> readLine(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    if (!in || !std::getline(in, line))
        return std::nullopt;
    return line;
}

std::optional<long long> readInteger(const std::filesystem::path& file) {
    const std::optional<std::string> line = readLine(file);
    if (!line)
        return std::nullopt;
    long long value = 0;
    const char* end = line->data() + line->size();
    const auto [rest, error] = std::from_chars(line->data(), end, value);
    if (error != std::errc() || rest == line->data() || (rest != end && *rest != ' '))
        return std::nullopt;
    return value;
}

std::vector<ThermalTrip> readTrips(const std::filesystem::path& zone) {
    std::vector<ThermalTrip> trips;
    for (int n = 0;; ++n) {
        const std::string prefix = "trip_point_" + std::to_string(n);
        const std::optional<std::string> type = readLine(zone / (prefix + "_type"));
        if (!type)
            break;
        if (const std::optional<long long> temp = readInteger(zone / (prefix + "_temp")))
            trips.push_back({*type, *temp});
    }
    return trips;
}

} // namespace

ThermalZoneStateSource::ThermalZoneStateSource(std::string rootDirectory)
    : rootDirectory_(std::move(rootDirectory)) {}

bool ThermalZoneStateSource::isCpuZoneType(std::string_view type) {
    constexpr std::array<std::string_view, 6> cpuTypes = {
        "x86_pkg_temp", "TCPU", "cpu-thermal", "cpu_thermal", "soc_thermal", "acpitz"};
    return std::find(cpuTypes.begin(), cpuTypes.end(), type) != cpuTypes.end();
}

ThermalState ThermalZoneStateSource::levelOf(long long milliCelsius,
                                             const std::vector<ThermalTrip>& trips) {
    // Firmware marks unused trips with 0 or negative temperatures; none is a real limit.
    long long hot = unset, critical = unset, passive = unset, active = unset;
    for (const ThermalTrip& trip : trips) {
        if (trip.milliCelsius <= 0)
            continue;
        long long* lowest = trip.type == "hot"        ? &hot
                            : trip.type == "critical" ? &critical
                            : trip.type == "passive"  ? &passive
                            : trip.type == "active"   ? &active
                                                      : nullptr;
        if (lowest)
            *lowest = std::min(*lowest, trip.milliCelsius);
    }
    const auto reached = [milliCelsius](long long limit) {
        return limit != unset && milliCelsius >= limit;
    };
    if (reached(hot) || (critical != unset && reached(critical - 5000)))
        return ThermalState::critical;
    if (reached(passive))
        return ThermalState::serious;
    if (reached(active) || (passive != unset && reached(passive - 10000)))
        return ThermalState::fair;
    return ThermalState::nominal;
}

std::optional<ThermalState> ThermalZoneStateSource::thermalState() const {
    namespace fs = std::filesystem;
    const fs::path thermal = fs::path(rootDirectory_) / "sys/class/thermal";
    std::optional<ThermalState> worst;
    std::error_code error;
    for (fs::directory_iterator it(thermal, error), end; !error && it != end; it.increment(error)) {
        const fs::path zone = it->path();
        if (zone.filename().string().rfind("thermal_zone", 0) != 0)
            continue;
        const std::optional<std::string> type = readLine(zone / "type");
        if (!type || !isCpuZoneType(*type))
            continue;
        const std::optional<long long> temp = readInteger(zone / "temp");
        if (!temp)
            continue;
        const ThermalState level = levelOf(*temp, readTrips(zone));
        if (!worst || level > *worst)
            worst = level;
    }
    return worst;
}
