#include "ScratchDir.h"
#include "ThermalReadingsPrinter.h"
#include "monitors/ThermalMonitor.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Prints its answer only when called exactly as the one-shot read calls it.
std::string answering(const std::string& json) {
    return "[ \"$#\" = 1 ] && [ \"$1\" = --all ] || exit 1\ncat <<'ANSWER'\n" + json + "\nANSWER\n";
}

std::string sensorList(size_t count) {
    std::string list;
    for (size_t i = 0; i < count; ++i) {
        list += (i ? "," : "") + std::string(R"({"key":"hwmon/nct6775/board/temp)") +
                std::to_string(i) + R"(","label":"Board sensor )" + std::to_string(i) +
                R"(","value":)" + std::to_string(30 + i % 20) + "}";
    }
    return list;
}

class ReadAll : public testing::Test {
protected:
    ScratchDir dir;
    ThermalMonitor monitor{(dir.path() / "installed").string()};

    ThermalReadings readScript(const std::string& body) {
        return monitor.readAll(dir.writeScript("helper", body).string());
    }
};

TEST_F(ReadAll, DecodesTheAnswerAndIgnoresExitStatus) {
    const std::string json =
        R"({"temperatures":[{"key":"tz/x86_pkg_temp/0","label":"CPU Die","value":48.0},
                            {"key":"nvml/0000:01:00.0","label":"GPU","value":38.0}],
            "fans":[{"id":0,"actual":1500,"min":300,"target":1500}]})";
    const ThermalReadings expected{
        48.0,
        38.0,
        {{"tz/x86_pkg_temp/0", "CPU Die", 48.0}, {"nvml/0000:01:00.0", "GPU", 38.0}},
        {{0, 1500, 300, 6000, 1500}}};
    EXPECT_EQ(readScript(answering(json)), expected);
    EXPECT_EQ(readScript(answering(json) + "exit 7\n"), expected);
}

TEST_F(ReadAll, BrokenHelpersGiveEmptyReadings) {
    const struct {
        const char* name;
        std::string body;
    } cases[] = {
        {"crash mid-answer", "printf '{\"temperatures\":[{\"key\":\"a\"'; kill -SEGV $$\n"},
        {"crash before answering", "kill -KILL $$\n"},
        {"garbage", "echo 'smc: cannot open device'\n"},
        {"non-object", answering(R"([{"key":"a","label":"CPU Die","value":50}])")},
        {"nothing", "exit 0\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(readScript(c.body), emptyThermalReadings) << c.name;
}

TEST_F(ReadAll, MissingOrUnrunnableHelperGivesEmptyReadings) {
    EXPECT_EQ(monitor.readAll((dir.path() / "absent").string()), emptyThermalReadings);
    EXPECT_EQ(monitor.readAll(dir.writeScript("plain", answering("{}"), 0644).string()),
              emptyThermalReadings);
    EXPECT_EQ(monitor.readAll(dir.path().string()), emptyThermalReadings);
}

TEST_F(ReadAll, AnswerThatFitsThePipeIsRead) {
    const std::string json = R"({"temperatures":[)" + sensorList(500) + "]}";
    ASSERT_LT(json.size(), 60000u);
    EXPECT_EQ(readScript(answering(json)).sensors.size(), 500u);
}

TEST_F(ReadAll, AnswerLargerThanThePipeGivesEmptyReadings) {
    // Read after exit, so a helper whose answer overfills the pipe cannot exit.
    const std::string json = R"({"temperatures":[)" + sensorList(2000) + "]}";
    ASSERT_GT(json.size(), 64u * 1024u);
    EXPECT_EQ(readScript(answering(json)), emptyThermalReadings);
}

TEST_F(ReadAll, HungHelperIsKilledAndGivesEmptyReadings) {
    const auto pidFile = dir.path() / "pid";
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(readScript("echo $$ > " + pidFile.string() + "\necho '{\"fans\":[{\"id\":0}]}'\n" +
                         "exec sleep 300\n"),
              emptyThermalReadings);
    const auto waited = std::chrono::steady_clock::now() - started;
    EXPECT_GE(waited, std::chrono::milliseconds(1500));
    EXPECT_LT(waited, std::chrono::seconds(10));
    const std::string stat =
        readFile("/proc/" + std::to_string(std::stoi(readFile(pidFile))) + "/stat");
    EXPECT_EQ(stat.find("sleep"), std::string::npos) << "the hung helper still runs: " << stat;
}

} // namespace
