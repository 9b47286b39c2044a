// Decoding the helper's answer, and estimating the CPU temperature from the thermal zones'
// level when there is no helper.
#include "monitors/ThermalAnswerDecoder.h"
#include "monitors/ThermalEstimate.h"
#include "monitors/linux/ThermalZoneStateSource.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {

using enum ThermalState;

TEST(AnswerDecoder, DecodesWhatItCanAndRejectsWhatIsNoObject) {
    const ThermalReadings empty = emptyThermalReadings;
    const struct {
        const char* name;
        std::string answer;
        ThermalReadings expected;
    } cases[] = {
        {"good",
         R"({"temperatures":[{"key":"p","label":"CPU Die","value":52.5},
            {"key":"g","label":"GPU Edge","value":41}],"fans":[{"id":0,"key":"hwmon/f/d/fan1",
            "actual":1210,"min":600,"max":5200,"target":1200},{"id":1,"actual":900}]})",
         {52.5,
          41,
          {{"p", "CPU Die", 52.5}, {"g", "GPU Edge", 41}},
          // A figure the chip does not report stays absent; a fan without a key cannot
          // be named in a command.
          {{0, "hwmon/f/d/fan1", 1210, 600, 5200, 1200}, {1, "", 900, {}, {}, {}}}}},
        {"bad sensors dropped",
         R"({"temperatures":[{"key":"a","label":"CPU Die","value":"58"},
            {"label":"no key","value":31},{"key":5,"label":"n","value":33},{"key":"e","label":null,
            "value":34},"text",{"key":"g","label":"Two","value":-1.25}]})",
         {0, 0, {{"g", "Two", -1.25}}, {}}},
        {"wrong types count as missing",
         R"({"fans":[{"id":3,"actual":"1200","min":null,"max":"fast","target":[1]}],"v":2})",
         {0, 0, {}, {{3, "", 0, {}, {}, {}}}}},
        {"integer ids only",
         R"({"fans":[{"actual":1},{"id":1.5},{"id":"2"},{"id":true},
            {"id":1e30},{"id":2.0,"actual":800},7,{"id":9223372036854775807}]})",
         {0, 0, {}, {{2, "", 800, {}, {}, {}}, {9223372036854775807LL, "", 0, {}, {}, {}}}}},
        {"arrays of wrong type", R"({"temperatures":{"key":"k"},"fans":"none"})", {}},
        {"top-level array", R"([{"fans":[{"id":0}]}])", empty},
        {"garbage", "Segmentation fault", empty},
        {"truncated", R"({"fans":[{"id":0)", empty},
        {"trailing garbage", R"({"fans":[{"id":0}]} {})", empty},
        {"number out of range", R"({"fans":[{"id":0,"actual":1e400}]})", empty},
        {"invalid UTF-8", "{\"temperatures\":[{\"key\":\"\xff\",\"label\":\"x\",\"value\":1}]}",
         empty},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(decodeThermalAnswer(c.answer) == c.expected) << c.name;
    // Only the given bytes are read, not what follows them.
    const std::string_view answer = R"({"fans":[{"id":4}]}trailing)";
    EXPECT_EQ(decodeThermalAnswer(answer.substr(0, answer.find('t'))).fans[0].id, 4);
}

TEST(AnswerDecoder, ChoosesCpuAndGpuTemperatureFromLabels) {
    const struct {
        std::vector<TemperatureSensor> sensors;
        double cpu, gpu;
    } cases[] = {
        {{{"", "CPU Performance 1", 61}, {"", "CPU Die", 58}}, 58, 0},
        {{{"", "CPU Die 2", 52}, {"", "CPU Proximity", 40}}, 40, 0},
        {{{"", "CPU Performance 1", 61}, {"", "CPU Proximity 2", 40}}, 61, 0},
        {{{"", "CPU Die", 0}, {"", "CPU Performance 1", 61}}, 61, 0},
        {{{"", "CPU A", -5}, {"", "CPU B", -3}, {"", "GPU", 0}, {"", "GPU Performance", 9}}, -3, 9},
        {{{"", "cpu die", 70}, {"", "SSD", 39}}, 0, 0},
    };
    for (const auto& c : cases) {
        const ChosenTemperatures chosen = chooseTemperatures(c.sensors);
        EXPECT_EQ(chosen.cpuTemp, c.cpu) << c.sensors.at(0).label;
        EXPECT_EQ(chosen.gpuTemp, c.gpu) << c.sensors.at(0).label;
    }
}

int level(std::optional<ThermalState> state) {
    return state ? static_cast<int>(*state) : -100;
}

TEST(ThermalZoneLevel, TripPointsGiveTheLevel) {
    // Fair from 10 below passive or at active, serious at passive, critical from 5 below
    // critical or at hot; the lowest trip of a kind counts, and 0 or below is no trip.
    const std::vector<ThermalTrip> laptop = {{"passive", 90000}, {"critical", 100000}};
    const std::pair<long long, ThermalState> onLaptop[] = {{79999, nominal}, {80000, fair},
                                                           {89999, fair},    {90000, serious},
                                                           {94999, serious}, {95000, critical}};
    for (const auto& [milliCelsius, expected] : onLaptop)
        EXPECT_EQ(ThermalZoneStateSource::levelOf(milliCelsius, laptop), expected) << milliCelsius;
    const std::tuple<long long, std::vector<ThermalTrip>, ThermalState> others[] = {
        {99000, {}, nominal},
        {55000, {{"active", 70000}, {"active", 55000}}, fair},
        {86000, {{"passive", 95000}, {"passive", 85000}}, serious},
        {85000, {{"hot", 85000}}, critical},
        {30000, {{"passive", 0}, {"active", 0}, {"critical", -273200}}, nominal},
    };
    for (const auto& [milliCelsius, trips, expected] : others)
        EXPECT_EQ(ThermalZoneStateSource::levelOf(milliCelsius, trips), expected) << milliCelsius;
}

TEST(ThermalZoneLevel, WorstReadableCpuZoneOfTheTreeCounts) {
    const std::pair<std::vector<std::pair<std::string, std::string>>, // type, temp file
                    std::optional<ThermalState>>
        cases[] = {
            {{}, std::nullopt},
            {{{"iwlwifi_1", "99000"}, {"x86_pkg_temp2", "99000"}, {"acpitz ", "99000"}}, {}},
            {{{"cpu-thermal", "bad"}, {"TCPU", "81000"}, {"acpitz", "91000"}, {"nvme", "99"}},
             serious},
            {{{"x86_pkg_temp", ""}, {"soc_thermal", "cool"}}, std::nullopt},
        };
    for (const auto& [zones, expected] : cases) {
        TempDir root;
        for (size_t n = 0; n < zones.size(); ++n) {
            const std::string zone = "sys/class/thermal/thermal_zone" + std::to_string(n) + "/";
            root.write(zone + "type", zones[n].first + "\n");
            root.write(zone + "trip_point_0_type", "passive\n");
            root.write(zone + "trip_point_0_temp", "90000\n");
            root.write(zone + "temp", zones[n].second + "\n");
        }
        EXPECT_EQ(level(ThermalZoneStateSource(root.str()).thermalState()), level(expected))
            << zones.size() << " zones";
    }
}

} // namespace
