#include "monitors/ThermalAnswerDecoder.h"
#include "ThermalReadingsPrinter.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

// An answer whose sensors carry these labels and values, keyed k0, k1, ...
std::string answerWithSensors(const std::vector<std::pair<std::string, double>>& sensors) {
    std::string json = R"({"temperatures":[)";
    for (size_t i = 0; i < sensors.size(); ++i) {
        json += (i ? "," : "") + std::string(R"({"key":"k)") + std::to_string(i) +
                R"(","label":")" + sensors[i].first + R"(","value":)" +
                std::to_string(sensors[i].second) + "}";
    }
    return json + R"(],"fans":[]})";
}

struct ChoiceCase {
    const char* name;
    std::vector<std::pair<std::string, double>> sensors;
    double cpuTemp;
    double gpuTemp;
};

void PrintTo(const ChoiceCase& c, std::ostream* out) {
    *out << c.name;
}

class TemperatureChoice : public testing::TestWithParam<ChoiceCase> {};

TEST_P(TemperatureChoice, PicksCpuAndGpuFromLabels) {
    const ChoiceCase& c = GetParam();
    const ThermalReadings readings = decodeThermalAnswer(answerWithSensors(c.sensors));
    ASSERT_EQ(readings.sensors.size(), c.sensors.size());
    EXPECT_DOUBLE_EQ(readings.cpuTemp, c.cpuTemp);
    EXPECT_DOUBLE_EQ(readings.gpuTemp, c.gpuTemp);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TemperatureChoice,
    testing::Values(
        ChoiceCase{"PerformanceThenDie", {{"CPU Performance Core 1", 61}, {"CPU Die", 58}}, 58, 0},
        ChoiceCase{"DieThenPerformance", {{"CPU Die", 58}, {"CPU Performance Core 1", 61}}, 58, 0},
        ChoiceCase{"LaterProximityOverridesDie", {{"CPU Proximity", 40}, {"CPU Die", 52}}, 52, 0},
        ChoiceCase{"LaterDieOverridesProximity", {{"CPU Die", 52}, {"CPU Proximity", 40}}, 40, 0},
        ChoiceCase{"DieSubstringCounts", {{"CPU Die 2", 71}}, 71, 0},
        ChoiceCase{"ProximityMustMatchExactly",
                   {{"CPU Performance Core 1", 61}, {"CPU Proximity 2", 40}},
                   61,
                   0},
        ChoiceCase{"FirstPerformanceClusterWins",
                   {{"CPU Performance Core 1", 61}, {"CPU Performance Core 2", 70}},
                   61,
                   0},
        ChoiceCase{"PerformanceNeedsCpuInLabel", {{"GPU Performance", 61}}, 0, 61},
        ChoiceCase{"HottestCpuWhenNothingChosen",
                   {{"CPU Efficiency Core 1", 44}, {"CPU Efficiency Core 2", 47}},
                   47,
                   0},
        ChoiceCase{"HottestOfNegativeCpuValues", {{"CPU A", -5}, {"CPU B", -3}}, -3, 0},
        ChoiceCase{
            "ZeroDieLetsPerformanceIn", {{"CPU Die", 0}, {"CPU Performance Core 1", 61}}, 61, 0},
        ChoiceCase{"FirstNonZeroGpuWins", {{"GPU 1", 0}, {"GPU 2", 55}, {"GPU 3", 60}}, 0, 55},
        ChoiceCase{"LabelsAreCaseSensitive", {{"cpu die", 70}, {"Gpu", 50}}, 0, 0},
        ChoiceCase{"NonCpuSensorsNeverChosen", {{"SSD Composite", 39}, {"Board", 30}}, 0, 0},
        ChoiceCase{"NoSensors", {}, 0, 0}),
    [](const testing::TestParamInfo<ChoiceCase>& info) { return std::string(info.param.name); });

struct WireCase {
    const char* name;
    const char* answer;
    ThermalReadings expected;
};

void PrintTo(const WireCase& c, std::ostream* out) {
    *out << c.name;
}

class AnswerFormat : public testing::TestWithParam<WireCase> {};

TEST_P(AnswerFormat, DecodesToRecord) {
    EXPECT_EQ(decodeThermalAnswer(GetParam().answer), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AnswerFormat,
    testing::Values(
        WireCase{"FullAnswer",
                 R"({"temperatures":[
                       {"key":"hwmon/coretemp/pkg/temp1","label":"CPU Die","value":52.5},
                       {"key":"hwmon/amdgpu/0000:03:00.0/temp1","label":"GPU Edge","value":41}],
                     "fans":[{"id":0,"actual":1210,"min":600,"max":5200,"target":1200},
                             {"id":1,"actual":900.5,"min":0,"max":3000,"target":0}]})",
                 {52.5,
                  41,
                  {{"hwmon/coretemp/pkg/temp1", "CPU Die", 52.5},
                   {"hwmon/amdgpu/0000:03:00.0/temp1", "GPU Edge", 41}},
                  {{0, 1210, 600, 5200, 1200}, {1, 900.5, 0, 3000, 0}}}},
        WireCase{"BadSensorsDroppedOthersKeptInOrder",
                 R"({"temperatures":[
                       {"key":"a","label":"CPU Die","value":"58"},
                       {"key":"b","label":"One","value":30},
                       {"label":"no key","value":31},
                       {"key":"c","value":32},
                       {"key":"d","label":"no value"},
                       {"key":5,"label":"numeric key","value":33},
                       {"key":"e","label":null,"value":34},
                       {"key":"f","label":"bool value","value":true},
                       "not an object",
                       {"key":"g","label":"Two","value":-1.25}],"fans":[]})",
                 {0, 0, {{"b", "One", 30}, {"g", "Two", -1.25}}, {}}},
        WireCase{"FanDefaults", R"({"fans":[{"id":0}]})", {0, 0, {}, {{0, 0, 0, 6000, 0}}}},
        WireCase{"FanNumbersOfWrongTypeCountAsMissing",
                 R"({"fans":[{"id":3,"actual":"1200","min":null,"max":"fast","target":[1]}]})",
                 {0, 0, {}, {{3, 0, 0, 6000, 0}}}},
        WireCase{"FanNeedsIntegerId",
                 R"({"fans":[{"actual":1},{"id":1.5},{"id":"2"},{"id":true},{"id":1e30},
                            {"id":2.0,"actual":800},{"id":-1},7]})",
                 {0, 0, {}, {{2, 800, 0, 6000, 0}, {-1, 0, 0, 6000, 0}}}},
        WireCase{"LargestIntegerId",
                 R"({"fans":[{"id":9223372036854775807}]})",
                 {0, 0, {}, {{9223372036854775807LL, 0, 0, 6000, 0}}}},
        WireCase{"OtherKeysIgnored",
                 R"({"version":2,"temperatures":[{"key":"k","label":"CPU Die","value":50,"x":1}],
                     "extra":{"fans":[{"id":9}]}})",
                 {50, 0, {{"k", "CPU Die", 50}}, {}}},
        WireCase{"MissingArraysGiveEmptyLists", R"({})", {}},
        WireCase{"ArraysOfWrongTypeGiveEmptyLists",
                 R"({"temperatures":{"key":"k","label":"CPU Die","value":50},"fans":"none"})",
                 {}},
        WireCase{"WhitespaceAroundObject",
                 " \n{\"fans\":[{\"id\":0,\"actual\":1}]}\n",
                 {0, 0, {}, {{0, 1, 0, 6000, 0}}}},
        WireCase{"TopLevelArray", R"([{"fans":[{"id":0}]}])", emptyThermalReadings},
        WireCase{"TopLevelString", R"("CPU Die")", emptyThermalReadings},
        WireCase{"Garbage", "Segmentation fault", emptyThermalReadings},
        WireCase{"Empty", "", emptyThermalReadings},
        WireCase{"Truncated", R"({"fans":[{"id":0)", emptyThermalReadings},
        WireCase{"TrailingGarbage", R"({"fans":[{"id":0}]} {})", emptyThermalReadings},
        WireCase{"NumberOutOfRange", R"({"fans":[{"id":0,"actual":1e400}]})", emptyThermalReadings},
        WireCase{"InvalidUtf8",
                 "{\"temperatures\":[{\"key\":\"\xff\",\"label\":\"x\",\"value\":1}]}",
                 emptyThermalReadings}),
    [](const testing::TestParamInfo<WireCase>& info) { return std::string(info.param.name); });

TEST(AnswerDecoder, EscapedNulStaysInKey) {
    const std::string answer("{\"temperatures\":[{\"key\":\"a\\u0000b\",\"label\":\"CPU Die\","
                             "\"value\":40}]}");
    const ThermalReadings readings = decodeThermalAnswer(answer);
    ASSERT_EQ(readings.sensors.size(), 1u);
    EXPECT_EQ(readings.sensors[0].id, std::string("a\0b", 3));
    EXPECT_DOUBLE_EQ(readings.cpuTemp, 40);
}

TEST(AnswerDecoder, ReadsOnlyTheGivenBytes) {
    const std::string buffer = R"({"fans":[{"id":4}]}trailing bytes beyond the answer)";
    const std::string_view answer(buffer.data(), buffer.find("trailing"));
    const ThermalReadings readings = decodeThermalAnswer(answer);
    ASSERT_EQ(readings.fans.size(), 1u);
    EXPECT_EQ(readings.fans[0].id, 4);
    EXPECT_EQ(decodeThermalAnswer(buffer), emptyThermalReadings);
}

} // namespace
