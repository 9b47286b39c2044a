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
    const struct {
        std::string name;
        void (*build)(const FakeSysfs&);
        std::string expected;
    } cases[] = {
        {"intel desktop", buildIntelDesktop,
         R"j({"temperatures":[)j"
         R"j({"key":"hwmon/nvme/nvme0/temp1","label":"SSD Composite","value":38.85},)j"
         R"j({"key":"hwmon/coretemp/coretemp.0/temp1","label":"CPU Die","value":52},)j"
         R"j({"key":"hwmon/coretemp/coretemp.0/temp2","label":"CPU Core 0","value":50},)j"
         R"j({"key":"hwmon/nct6798/nct6775.656/temp1","label":"nct6798 SYSTIN","value":34},)j"
         R"j({"key":"hwmon/nct6798/nct6775.656/temp2","label":"Board sensor (cputin)","value":98},)j"
         R"j({"key":"tz/acpitz/0","label":"acpitz","value":27.8}],)j"
         R"j("fans":[{"id":0,"key":"hwmon/nct6798/nct6775.656/fan1","actual":812,"min":300},)j"
         R"j({"id":1,"key":"hwmon/nct6798/nct6775.656/fan2","actual":1204},)j"
         R"j({"id":2,"key":"hwmon/nct6798/nct6775.656/fan5","actual":0}]})j"},
        {"amd desktop", buildAmdDesktop,
         R"j({"temperatures":[)j"
         R"j({"key":"hwmon/k10temp/0000:00:18.3/temp1","label":"CPU Die","value":61.5},)j"
         R"j({"key":"hwmon/k10temp/0000:00:18.3/temp3","label":"CPU CCD 1","value":55.25},)j"
         R"j({"key":"hwmon/nct6799/nct6775.2592/temp1","label":"nct6799 SYSTIN","value":31},)j"
         R"j({"key":"hwmon/amdgpu/0000:0a:00.0/temp1","label":"GPU Edge","value":45},)j"
         R"j({"key":"hwmon/amdgpu/0000:0a:00.0/temp2","label":"GPU Hotspot","value":52}],)j"
         R"j("fans":[{"id":0,"key":"hwmon/nct6799/nct6775.2592/fan2","actual":950},)j"
         R"j({"id":1,"key":"hwmon/amdgpu/0000:0a:00.0/fan1","actual":1500,"min":0,"max":3300,)j"
         R"j("target":1500}]})j"},
        {"macbook", buildMacBook,
         R"j({"temperatures":[)j"
         R"j({"key":"hwmon/applesmc/applesmc.768/temp1","label":"applesmc TB0T","value":30},)j"
         R"j({"key":"hwmon/applesmc/applesmc.768/temp2","label":"CPU Die","value":55},)j"
         R"j({"key":"hwmon/applesmc/applesmc.768/temp3","label":"CPU Proximity","value":45}],)j"
         R"j("fans":[{"id":0,"key":"hwmon/applesmc/applesmc.768/fan1","actual":2000,"min":2000,)j"
         R"j("max":6200,"target":2000},{"id":1,"key":"hwmon/applesmc/applesmc.768/fan2",)j"
         R"j("actual":1998,"min":2000,"max":5800,"target":2000}]})j"},
        // Two sockets without coretemp: their package zones stand in for the CPU.
        {"thermal zones only",
         [](const FakeSysfs& sysfs) {
             sysfs.addThermalZone(0, "x86_pkg_temp", 62000);
             sysfs.addThermalZone(1, "iwlwifi_1", 36000);
             sysfs.addThermalZone(2, "x86_pkg_temp", 64000);
         },
         R"j({"temperatures":[{"key":"tz/x86_pkg_temp/0","label":"CPU Die","value":62},)j"
         R"j({"key":"tz/x86_pkg_temp/1","label":"CPU Die 2","value":64}],"fans":[]})j"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeSysfs sysfs;
        c.build(sysfs);
        const HelperResult result = runHelper({"--sysfs-root", sysfs.root(), "--all"});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, c.expected + "\n");
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
