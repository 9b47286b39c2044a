// The helper's parts that need no process: commands, sensor names, failsafe thresholds.
#include "CommandParser.h"
#include "Failsafe.h"
#include "SensorLabeller.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandParser, AcceptsExactlyTheFiveFormsAndRefusesTheRest) {
    const std::string key = "hwmon/nct6798/nct6775.656/fan2";
    // Keys of the longest allowed length, and a shorter last one, fill a set-all to
    // exactly the line limit.
    const std::string longKey(maxFanKeyBytes, 'k');
    std::string longest = "set-all";
    std::vector<FanValue> longestFans;
    const auto add = [&](const std::string& fan) {
        longest += " " + fan + "=1";
        longestFans.push_back({fan, 1});
    };
    while (longest.size() + longKey.size() + 3 <= maxCommandLineBytes)
        add(longKey);
    add(std::string(maxCommandLineBytes - longest.size() - 3, 'z'));
    using K = CommandKind;
    const struct {
        std::string line;
        std::optional<Command> expected; // nullopt: refused with `error`
        std::string error;
    } cases[] = {
        {"quit", Command{}, ""},
        {"set-fan " + key + " 999999999", Command{K::setFan, {{key, 999999999}}}, ""},
        {"set-duty " + key + " 100", Command{K::setDuty, {{key, 100}}}, ""},
        {"set-all " + key + "=1800 x=007", Command{K::setAll, {{key, 1800}, {"x", 7}}}, ""},
        {"fan-auto " + key, Command{K::fanAuto, {{key, 0}}}, ""},
        {longest, Command{K::setAll, longestFans}, ""},
        {longest + "0", {}, "line longer than 8192 bytes"},
        // A key holds no path tricks or blanks.
        {"set-fan " + longKey + "k 1", {}, "not a fan key"},
        {"fan-auto a;b", {}, "not a fan key"},
        {"set-all " + key + " 1", {}, "set-all takes <key>=<rpm> pairs"},
        {"set-all =1", {}, "missing fan key or extra space"},
        {"set-duty " + key + " 101", {}, "duty above 100 percent"},
        {"QUIT", {}, "unknown command"},
        {std::string("quit\0", 5), {}, "unknown command"},
        {"quit ", {}, "wrong number of arguments for quit"},
        {"set-fan  " + key + " 3000", {}, "wrong number of arguments for set-fan"},
        {"set-all", {}, "wrong number of arguments for set-all"},
        {"set-all " + key + "=", {}, "missing number or extra space"},
        {"set-fan " + key + " -0", {}, "negative number"},
        {"set-fan " + key + " +5", {}, "not a decimal number"},
        {"set-fan " + key + " 3000\r", {}, "not a decimal number"},
        {"set-fan " + key + " 1000000000", {}, "number too large"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("line: " + c.line.substr(0, 80));
        const ParsedCommand parsed = parseCommand(c.line);
        EXPECT_EQ(parsed.command, c.expected);
        EXPECT_EQ(parsed.error, c.error);
    }
}

TEST(SensorLabeller, OnlyRealCpusSayCpuAndOnlyGpusSayGpu) {
    const struct {
        std::string chip;
        std::vector<RawTemperature> sensors;
        std::vector<std::optional<std::string>> expected; // nullopt: left out
    } cases[] = {
        // Tctl carries an offset on some parts: it is the die only when there is no Tdie.
        {"zenpower", {{1, "Tctl", 70000}, {2, "Tdie", 43000}}, {"CPU Tctl", "CPU Die"}},
        {"applesmc",
         {{1, "TC0P", 40000}, {2, "TC0F", 54000}, {3, "TCXC", 50000}},
         {"CPU Proximity", "CPU Die", "applesmc TCXC"}},
        // Below 10 °C a GPU is powered down, not cold.
        {"amdgpu",
         {{1, "edge", 9999}, {2, "junction", 10000}, {3, "mem", 60000}, {4, "vddgfx", 40000}},
         {std::nullopt, "GPU Hotspot", "GPU Memory", "GPU vddgfx"}},
        {"nouveau", {{1, "", 55000}}, {"GPU"}},
        {"nvme", {{3, "", 36000}}, {"SSD"}},
        // A board's floating "CPUTIN" or an EC's idea of the CPU must never pass for it.
        {"nct6798",
         {{2, "CPUTIN", 98000}, {7, "PECI Agent 0", 50000}},
         {"Board sensor (cputin)", "nct6798 PECI Agent 0"}},
        {"dell_smm", {{1, "CPU", 50000}, {3, "GPU", 0}}, {"Board sensor (cpu)", "dell_smm GPU"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.chip);
        EXPECT_EQ(labelChipTemperatures(c.chip, c.sensors), c.expected);
    }
    EXPECT_EQ(labelThermalZone("TCPU", false), "Board sensor (tcpu)");
}

TEST(Failsafe, TripsAt95Or5BelowCriticalAndReleases10Lower) {
    const struct {
        std::optional<long long> crit;
        long long trigger;
        long long release;
    } cases[] = {{std::nullopt, 95000, 85000}, {100000, 95000, 85000}, {99999, 94999, 84999},
                 {90000, 85000, 75000},        {0, 95000, 85000},      {-5000, 95000, 85000}};
    for (const auto& c : cases) {
        const Failsafe::Limits limits = Failsafe::limitsFor(c.crit);
        EXPECT_EQ(limits.triggerMilliCelsius, c.trigger) << c.crit.value_or(-1);
        EXPECT_EQ(limits.releaseMilliCelsius, c.release) << c.crit.value_or(-1);
    }
}

} // namespace
