#include "monitors/linux/ThermalZoneStateSource.h"
#include "ScratchDir.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

struct Zone {
    std::string type;
    std::string temp; // file content, millidegrees
    std::vector<std::pair<std::string, long long>> trips;
};

void writeZones(const ScratchDir& root, const std::vector<Zone>& zones) {
    for (size_t n = 0; n < zones.size(); ++n) {
        const std::string dir = "sys/class/thermal/thermal_zone" + std::to_string(n) + "/";
        root.writeFile(dir + "type", zones[n].type + "\n");
        root.writeFile(dir + "temp", zones[n].temp + "\n");
        for (size_t t = 0; t < zones[n].trips.size(); ++t) {
            const std::string trip = dir + "trip_point_" + std::to_string(t);
            root.writeFile(trip + "_type", zones[n].trips[t].first + "\n");
            root.writeFile(trip + "_temp", std::to_string(zones[n].trips[t].second) + "\n");
        }
    }
}

std::string describe(std::optional<ThermalState> state) {
    return state ? std::to_string(static_cast<int>(*state)) : "none";
}

struct ZoneCase {
    const char* name;
    std::vector<Zone> zones;
    std::optional<ThermalState> expected;
};

void PrintTo(const ZoneCase& c, std::ostream* out) {
    *out << c.name;
}

class ThermalZoneLevels : public testing::TestWithParam<ZoneCase> {};

TEST_P(ThermalZoneLevels, WorstCpuZoneGivesTheState) {
    ScratchDir root;
    writeZones(root, GetParam().zones);
    const ThermalZoneStateSource source(root.path().string());
    EXPECT_EQ(describe(source.thermalState()), describe(GetParam().expected));
}

const std::vector<std::pair<std::string, long long>> laptopTrips = {{"passive", 90000},
                                                                    {"critical", 100000}};

INSTANTIATE_TEST_SUITE_P(
    Trees, ThermalZoneLevels,
    testing::Values(
        ZoneCase{"NoZones", {}, std::nullopt},
        ZoneCase{"OnlyNonCpuZones",
                 {{"iwlwifi_1", "95000", {}}, {"pch_cannonlake", "99000", {{"critical", 90000}}}},
                 std::nullopt},
        ZoneCase{"CoolIsNominal", {{"x86_pkg_temp", "50000", laptopTrips}}, ThermalState::nominal},
        ZoneCase{"NoTripsIsNominal", {{"x86_pkg_temp", "99000", {}}}, ThermalState::nominal},
        ZoneCase{
            "TenBelowPassiveIsFair", {{"x86_pkg_temp", "80000", laptopTrips}}, ThermalState::fair},
        ZoneCase{"JustUnderFair", {{"x86_pkg_temp", "79999", laptopTrips}}, ThermalState::nominal},
        ZoneCase{"ActiveTripIsFair",
                 {{"acpitz", "55000", {{"active", 55000}, {"critical", 110000}}}},
                 ThermalState::fair},
        ZoneCase{"LowestActiveTripCounts",
                 {{"acpitz", "56000", {{"active", 70000}, {"active", 55000}}}},
                 ThermalState::fair},
        ZoneCase{"PassiveTripIsSerious",
                 {{"x86_pkg_temp", "90000", laptopTrips}},
                 ThermalState::serious},
        ZoneCase{"LowestPassiveTripCounts",
                 {{"cpu-thermal", "86000", {{"passive", 95000}, {"passive", 85000}}}},
                 ThermalState::serious},
        ZoneCase{"FiveBelowCriticalIsCritical",
                 {{"x86_pkg_temp", "95000", laptopTrips}},
                 ThermalState::critical},
        ZoneCase{"HotTripIsCritical",
                 {{"soc_thermal", "85000", {{"hot", 85000}}}},
                 ThermalState::critical},
        ZoneCase{"ZeroTripsAreIgnored",
                 {{"acpitz", "30000", {{"passive", 0}, {"active", 0}, {"critical", -273200}}}},
                 ThermalState::nominal},
        ZoneCase{"WorstZoneWins",
                 {{"x86_pkg_temp", "40000", laptopTrips}, {"acpitz", "91000", laptopTrips}},
                 ThermalState::serious},
        ZoneCase{"NonCpuZoneDoesNotCount",
                 {{"x86_pkg_temp", "40000", laptopTrips}, {"nvme", "99000", laptopTrips}},
                 ThermalState::nominal},
        ZoneCase{"UnreadableTempSkipped",
                 {{"x86_pkg_temp", "garbage", laptopTrips}, {"TCPU", "40000", laptopTrips}},
                 ThermalState::nominal},
        ZoneCase{"OnlyUnreadableZone", {{"x86_pkg_temp", "", laptopTrips}}, std::nullopt}),
    [](const testing::TestParamInfo<ZoneCase>& info) { return std::string(info.param.name); });

TEST(ThermalZoneStateSource, RecognisesEveryCpuZoneType) {
    for (const char* type :
         {"x86_pkg_temp", "TCPU", "cpu-thermal", "cpu_thermal", "soc_thermal", "acpitz"}) {
        ScratchDir root;
        writeZones(root, {{type, "81000", laptopTrips}});
        EXPECT_EQ(describe(ThermalZoneStateSource(root.path().string()).thermalState()),
                  describe(ThermalState::fair))
            << type;
    }
    for (const char* type : {"cpu", "CPU", "x86_pkg_temp2", "TCPU_PCI", "acpitz "}) {
        ScratchDir root;
        writeZones(root, {{type, "81000", laptopTrips}});
        EXPECT_EQ(ThermalZoneStateSource(root.path().string()).thermalState(), std::nullopt)
            << type;
    }
}

TEST(ThermalZoneStateSource, FilesWhereFoldersShouldBeGiveNoState) {
    ScratchDir root;
    root.writeFile("sys/class/thermal", "not a directory");
    EXPECT_EQ(ThermalZoneStateSource(root.path().string()).thermalState(), std::nullopt);

    ScratchDir zoneIsFile;
    zoneIsFile.writeFile("sys/class/thermal/thermal_zone0", "x86_pkg_temp");
    EXPECT_EQ(ThermalZoneStateSource(zoneIsFile.path().string()).thermalState(), std::nullopt);

    ScratchDir tempIsFolder;
    tempIsFolder.writeFile("sys/class/thermal/thermal_zone0/type", "x86_pkg_temp\n");
    std::filesystem::create_directories(tempIsFolder.path() /
                                        "sys/class/thermal/thermal_zone0/temp");
    EXPECT_EQ(ThermalZoneStateSource(tempIsFolder.path().string()).thermalState(), std::nullopt);
}

TEST(ThermalZoneStateSource, ReadsThisMachine) {
    // No assumption about the hardware: only that reading the real tree is safe and
    // agrees with a CPU zone being present.
    bool cpuZone = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/sys/class/thermal", error)) {
        const std::string type = readFile(entry.path() / "type");
        cpuZone |= ThermalZoneStateSource::isCpuZoneType(type.substr(0, type.find('\n'))) &&
                   !readFile(entry.path() / "temp").empty();
    }
    EXPECT_EQ(ThermalZoneStateSource().thermalState().has_value(), cpuZone);
}

} // namespace
