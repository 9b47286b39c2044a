// `smc_helper --all` and `--serve`: the real binary over fake sysfs trees.
#include "ReadingsCache.h"
#include "support/FakeMachines.h"
#include "support/HelperProcess.h"

#include <gtest/gtest.h>

#include <functional>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace {

TEST(HelperOneShot, AnswersEachMachineWithItsJson) {
    // Chips come in device-path order whatever their hwmon numbers, GPUs last. A zone
    // is listed in place of its hwmon mirror, or as "CPU Die" when no chip measures the CPU.
    // The expected answers are tests/fixtures/helper/<name>.json, one object a line.
    const std::pair<std::string, void (*)(const FakeSysfs&)> cases[] = {
        {"intel-desktop", buildIntelDesktop},
        {"amd-desktop", buildAmdDesktop},
        {"macbook", buildMacBook},
        // Two sockets without coretemp: their package zones stand in for the CPU.
        {"thermal-zones-only",
         [](const FakeSysfs& sysfs) {
             sysfs.addThermalZone(0, "x86_pkg_temp", 62000);
             sysfs.addThermalZone(1, "iwlwifi_1", 36000);
             sysfs.addThermalZone(2, "x86_pkg_temp", 64000);
         }},
    };
    for (const auto& [name, build] : cases) {
        SCOPED_TRACE(name);
        FakeSysfs sysfs;
        build(sysfs);
        const HelperResult result = runHelper({"--sysfs-root", sysfs.root(), "--all"});
        EXPECT_EQ(result.exitStatus, 0);
        std::string expected = readFile(fixturePath("helper/" + name + ".json"));
        std::erase(expected, '\n');
        EXPECT_EQ(result.output, expected + "\n");
        EXPECT_EQ(result.errors, "");
    }
}

TEST(HelperServe, AnswersEachRequestAsAFreshAllWouldWithoutScanningEachTime) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    const std::string gpu = "pci0000:00/0000:00:08.1/0000:0e:00.0";
    DaemonProcess serving(helperBinary(), {"smc_helper", "--serve", "--sysfs-root", sysfs.root()});
    std::string answers;
    const auto servesAsAllWould = [&] {
        answers += runHelper({"--all", "--sysfs-root", sysfs.root()}).output;
        serving.send("read\n");
        return serving.waitForOutput(answers) && serving.output() == answers;
    };
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"first request", [] {}},
        {"a value moves",
         [&] { sysfs.write(std::string(intelCoretempChip) + "/temp2_input", "61000\n"); }},
        {"a GPU comes",
         [&] {
             sysfs.addHwmon(5, gpu, {"name=amdgpu", "temp1_input=40000", "temp1_label=edge"});
             sysfs.write("sys/devices/" + gpu + "/power/runtime_status", "active\n");
         }},
        {"the GPU goes to sleep",
         [&] { sysfs.write("sys/devices/" + gpu + "/power/runtime_status", "suspended\n"); }},
        {"a fan stops reporting",
         [&] { sysfs.write(std::string(intelBoardChip) + "/fan1_input", "garbage\n"); }},
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        change();
        EXPECT_TRUE(servesAsAllWould()) << serving.output();
    }
    serving.closeInput();
    EXPECT_EQ(serving.waitForExit(), 0);

    // Behind those answers: one scan, then only the kept files, until a chip comes.
    const auto tree = SysfsTree::open(sysfs.root());
    ReadingsCache cache(*tree);
    for (int i = 0; i < 3; ++i)
        cache.read();
    EXPECT_EQ(cache.scanCount(), 1);
    sysfs.addHwmon(6, "platform/nct6775.2592", {"name=nct6799", "fan2_input=950"});
    EXPECT_EQ(cache.read().fans.size(), 3u);
    EXPECT_EQ(cache.scanCount(), 2);
}

TEST(HelperOneShot, ReadsAGpuUnlessReadingWouldWakeIt) {
    const std::pair<const char*, bool> states[] = {{"suspended", false},
                                                   {"suspending", false},
                                                   {"active", true},
                                                   {"unsupported", true},
                                                   {nullptr, true}}; // no power folder
    for (const auto& [status, read] : states) {
        SCOPED_TRACE(status ? status : "no power folder");
        FakeSysfs sysfs;
        const std::string device = "pci0000:00/0000:00:08.1/0000:0e:00.0";
        const std::string chip =
            sysfs.addHwmon(0, device, {"name=amdgpu", "temp1_input=40000", "temp1_label=edge"});
        if (status)
            sysfs.write("sys/devices/" + device + "/power/runtime_status",
                        status + std::string("\n"));
        FileWatch opened(sysfs.root() + "/" + chip, IN_OPEN);
        const HelperResult result = runHelper({"--all", "--sysfs-root", sysfs.root()});
        EXPECT_EQ(result.output.find("GPU Edge") != std::string::npos, read) << result.output;
        // The hwmon core serves "name" without waking the device; any other file would not.
        if (!read) {
            EXPECT_EQ(opened.names(), std::vector<std::string>{"name"});
        }
    }
}

TEST(HelperOneShot, ReadsNothingOutsideSysDevicesAndKeepsTheAnswerValidJson) {
    FakeSysfs sysfs;
    // A class entry leading out of sys/devices is not a chip; nor is one whose path
    // under sys/devices passes through a link that leads out of it.
    sysfs.write("elsewhere/hwmon/hwmon9/name", "evil\n");
    sysfs.write("elsewhere/hwmon/hwmon9/temp1_input", "99000\n");
    sysfs.link("../../../elsewhere/hwmon/hwmon9", "sys/class/hwmon/hwmon9");
    sysfs.write("outside/hwmon/hwmon7/name", "escaped\n");
    sysfs.write("outside/hwmon/hwmon7/temp1_input", "77000\n");
    sysfs.link("../../outside", "sys/devices/escape");
    sysfs.link("../../devices/escape/hwmon/hwmon7", "sys/class/hwmon/hwmon7");
    // Attributes that are symlinks or FIFOs are never read (nor waited on); a chip
    // without a name is skipped.
    const std::string chip =
        sysfs.addHwmon(1, "platform/odd.0",
                       {"name=we\"ird\\\x01", "temp2_input=42000", "temp2_label=h\303\251at\t"});
    sysfs.write("secret", "12345\n");
    sysfs.link("../../../../../../secret", chip + "/temp1_input");
    ASSERT_EQ(mkfifo((sysfs.root() + "/" + chip + "/temp3_input").c_str(), 0644), 0);
    sysfs.addHwmon(2, "platform/nameless.0", {"temp1_input=50000"});

    const HelperResult result = runHelper({"--all", "--sysfs-root", sysfs.root()});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, R"j({"temperatures":[{"key":"hwmon/we\"ird\\\u0001/odd.0/temp2",)j"
                             R"j("label":"we\"ird\\\u0001 h??at","value":42}],"fans":[]})j"
                             "\n");
}

TEST(HelperOneShot, RefusesToStartWithoutAProgramName) {
    // Linux turns an empty argv into {""}: arguments would sit where argv[0] is read.
    for (const std::vector<std::string>& argv : {std::vector<std::string>{}, {"", "--all"}}) {
        const HelperResult result = runProgram(helperBinary(), argv);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.errors, "smc_helper: refusing to start without a program name\n");
    }
}

} // namespace
