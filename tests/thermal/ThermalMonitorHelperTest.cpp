// The link against the real smc_helper, run on a fake sysfs tree through a wrapper
// script that adds --sysfs-root (the link itself passes only "--all" or "--daemon").
#include "ScratchDir.h"
#include "monitors/ThermalMonitor.h"
#include "monitors/linux/HelperLocation.h"
#include "monitors/linux/IgnoreSigpipe.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

#include <string>

namespace {

using namespace std::chrono_literals;

const std::string builtHelper = VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";

// A desktop board: coretemp package sensor, an nct6775 with one pwm-driven fan.
void writeFakeHardware(const ScratchDir& root) {
    const std::string coretemp = "sys/devices/platform/coretemp.0/hwmon/hwmon1/";
    root.writeFile(coretemp + "name", "coretemp\n");
    root.writeFile(coretemp + "temp1_input", "52000\n");
    root.writeFile(coretemp + "temp1_label", "Package id 0\n");
    const std::string board = "sys/devices/platform/nct6775.656/hwmon/hwmon2/";
    root.writeFile(board + "name", "nct6775\n");
    root.writeFile(board + "temp1_input", "31000\n");
    root.writeFile(board + "temp1_label", "SYSTIN\n");
    root.writeFile(board + "fan1_input", "1200\n");
    root.writeFile(board + "fan1_min", "300\n");
    root.writeFile(board + "fan1_max", "3000\n");
    root.writeFile(board + "pwm1", "100\n");
    root.writeFile(board + "pwm1_enable", "5\n");
    std::filesystem::create_directories(root.path() / "sys/class/hwmon");
    std::filesystem::create_symlink("../../devices/platform/coretemp.0/hwmon/hwmon1",
                                    root.path() / "sys/class/hwmon/hwmon1");
    std::filesystem::create_symlink("../../devices/platform/nct6775.656/hwmon/hwmon2",
                                    root.path() / "sys/class/hwmon/hwmon2");
}

std::string firstLine(const std::filesystem::path& file) {
    const std::string text = readFile(file);
    return text.substr(0, text.find('\n'));
}

class RealHelper : public testing::Test {
protected:
    void SetUp() override {
        if (!isExecutableFile(builtHelper))
            GTEST_SKIP() << "smc_helper has not been built at " << builtHelper;
        ignoreSigpipe();
        writeFakeHardware(tree);
        // exec keeps the helper's pid the one written to `pidFile`.
        scratch.writeScript(wrapperName,
                            "echo $$ > " + pidFile.string() + "\nexec " + builtHelper +
                                " \"$@\" --sysfs-root " + tree.path().string() + "\n",
                            04755);
    }

    ScratchDir tree;
    ScratchDir scratch;
    const std::string wrapperName = "vorlune_smc_helper";
    const std::filesystem::path wrapper = scratch.path() / wrapperName;
    const std::filesystem::path pidFile = scratch.path() / "pid";
    const std::filesystem::path pwm =
        tree.path() / "sys/devices/platform/nct6775.656/hwmon/hwmon2/pwm1";
    const std::filesystem::path pwmEnable =
        tree.path() / "sys/devices/platform/nct6775.656/hwmon/hwmon2/pwm1_enable";
    ThermalMonitor monitor{wrapper.string()};
};

TEST_F(RealHelper, OneShotAnswerDecodes) {
    const ThermalReadings readings = monitor.readAll(wrapper.string());
    EXPECT_DOUBLE_EQ(readings.cpuTemp, 52.0);
    EXPECT_DOUBLE_EQ(readings.gpuTemp, 0.0);
    ASSERT_EQ(readings.fans.size(), 1u);
    EXPECT_EQ(readings.fans[0], (FanInfo{0, 1200, 300, 3000, readings.fans[0].target}));
    bool boardSensorSeen = false;
    for (const TemperatureSensor& sensor : readings.sensors)
        boardSensorSeen |= sensor.value == 31.0 && sensor.label.find("CPU") == std::string::npos;
    EXPECT_TRUE(boardSensorSeen);
}

TEST_F(RealHelper, DaemonDrivesTheFanAndRestoresItOnStop) {
    ASSERT_TRUE(monitor.isHelperInstalled());
    ASSERT_TRUE(monitor.startDaemon());
    ASSERT_TRUE(monitor.setFanSpeed(0, 3000));
    EXPECT_TRUE(eventually([&] { return firstLine(pwm) == "255"; }))
        << "pwm1 is " << firstLine(pwm);
    EXPECT_EQ(firstLine(pwmEnable), "1");
    monitor.stopDaemon();
    EXPECT_EQ(firstLine(pwm), "100");
    EXPECT_EQ(firstLine(pwmEnable), "5");
}

TEST_F(RealHelper, KilledDaemonRefusesCommandsAndVorluneLivesOn) {
    ASSERT_TRUE(monitor.startDaemon());
    const pid_t pid = std::stoi(readFile(pidFile));
    ASSERT_EQ(::kill(pid, SIGKILL), 0);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(monitor.setFanSpeed(0, 1500));
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
    monitor.stopDaemon();
}

} // namespace
