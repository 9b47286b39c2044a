#include "support/FakeMachines.h"
#include "support/FakeSysfs.h"
#include "support/HelperProcess.h"

#include <gtest/gtest.h>

#include <array>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Machine JSON is written one sensor per line here for reading; the helper prints it
// on one line.
std::string compact(const std::vector<std::string>& parts) {
    std::string joined;
    for (const std::string& part : parts)
        joined += part;
    return joined + "\n";
}

struct MachineCase {
    std::string name;
    void (*build)(FakeSysfs&);
    std::string expected;
};

TEST(HelperOneShot, AnswersEachFakeMachineWithItsJson) {
    const std::vector<MachineCase> cases = {
        {"intel desktop", buildIntelDesktop,
         compact(
             {R"j({"temperatures":[)j",
              R"j({"key":"hwmon/nvme/nvme0/temp1","label":"SSD Composite","value":38.85},)j",
              R"j({"key":"hwmon/coretemp/coretemp.0/temp1","label":"CPU Die","value":52},)j",
              R"j({"key":"hwmon/coretemp/coretemp.0/temp2","label":"CPU Core 0","value":50},)j",
              R"j({"key":"hwmon/coretemp/coretemp.0/temp3","label":"CPU Core 1","value":51.5},)j",
              R"j({"key":"hwmon/nct6798/nct6775.656/temp1","label":"nct6798 SYSTIN","value":34},)j",
              R"j({"key":"hwmon/nct6798/nct6775.656/temp2","label":"Board sensor (cputin)","value":98},)j",
              R"j({"key":"hwmon/nct6798/nct6775.656/temp3","label":"nct6798 AUXTIN0","value":30.5},)j",
              R"j({"key":"tz/acpitz/0","label":"acpitz","value":27.8}],)j",
              R"j("fans":[{"id":0,"actual":812,"min":300,"target":0},)j",
              R"j({"id":1,"actual":1204,"min":0,"target":0},)j",
              R"j({"id":2,"actual":0,"min":0,"target":0}]})j"})},
        {"amd desktop", buildAmdDesktop,
         compact(
             {R"j({"temperatures":[)j",
              R"j({"key":"hwmon/k10temp/0000:00:18.3/temp1","label":"CPU Die","value":61.5},)j",
              R"j({"key":"hwmon/k10temp/0000:00:18.3/temp3","label":"CPU CCD 1","value":55.25},)j",
              R"j({"key":"hwmon/k10temp/0000:00:18.3/temp4","label":"CPU CCD 2","value":54},)j",
              R"j({"key":"hwmon/nct6799/nct6775.2592/temp1","label":"nct6799 SYSTIN","value":31},)j",
              R"j({"key":"hwmon/amdgpu/0000:0a:00.0/temp1","label":"GPU Edge","value":45},)j",
              R"j({"key":"hwmon/amdgpu/0000:0a:00.0/temp2","label":"GPU Hotspot","value":52},)j",
              R"j({"key":"hwmon/amdgpu/0000:0a:00.0/temp3","label":"GPU Memory","value":60}],)j",
              R"j("fans":[{"id":0,"actual":950,"min":0,"target":0},)j",
              R"j({"id":1,"actual":1500,"min":0,"max":3300,"target":1500}]})j"})},
        {"thinkpad", buildThinkPad,
         compact(
             {R"j({"temperatures":[)j",
              R"j({"key":"hwmon/coretemp/coretemp.0/temp1","label":"CPU Die","value":48},)j",
              R"j({"key":"hwmon/coretemp/coretemp.0/temp2","label":"CPU Core 0","value":46},)j",
              R"j({"key":"hwmon/thinkpad/thinkpad_hwmon/temp1","label":"thinkpad temp1","value":50},)j",
              R"j({"key":"hwmon/thinkpad/thinkpad_hwmon/temp2","label":"thinkpad temp2","value":41},)j",
              R"j({"key":"tz/acpitz/0","label":"acpitz","value":47}],)j",
              R"j("fans":[{"id":0,"actual":2900,"min":0,"target":0}]})j"})},
        {"macbook", buildMacBook,
         compact(
             {R"j({"temperatures":[)j",
              R"j({"key":"hwmon/applesmc/applesmc.768/temp1","label":"applesmc TB0T","value":30},)j",
              R"j({"key":"hwmon/applesmc/applesmc.768/temp2","label":"CPU Die","value":55},)j",
              R"j({"key":"hwmon/applesmc/applesmc.768/temp3","label":"CPU Proximity","value":45},)j",
              R"j({"key":"hwmon/applesmc/applesmc.768/temp4","label":"applesmc TG0P","value":44}],)j",
              R"j("fans":[{"id":0,"actual":2000,"min":2000,"max":6200,"target":2000},)j",
              R"j({"id":1,"actual":1998,"min":2000,"max":5800,"target":2000}]})j"})},
        {"raspberry pi", buildRaspberryPi,
         compact(
             {R"j({"temperatures":[{"key":"tz/cpu-thermal/0","label":"CPU Die","value":48.312}],)j",
              R"j("fans":[{"id":0,"actual":2800,"min":0,"target":0}]})j"})},
        {"thermal zones only", buildThermalZonesOnly,
         compact({R"j({"temperatures":[)j",
                  R"j({"key":"tz/acpitz/0","label":"acpitz","value":40},)j",
                  R"j({"key":"tz/x86_pkg_temp/0","label":"CPU Die","value":62},)j",
                  R"j({"key":"tz/x86_pkg_temp/1","label":"CPU Die 2","value":64}],"fans":[]})j"})},
        {"empty", [](FakeSysfs&) {}, compact({R"j({"temperatures":[],"fans":[]})j"})},
    };
    for (const MachineCase& c : cases) {
        SCOPED_TRACE(c.name);
        FakeSysfs sysfs;
        c.build(sysfs);
        const HelperResult result = runHelper({"--all", "--sysfs-root", sysfs.root()});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, c.expected);
        EXPECT_EQ(result.errors, "");
    }
}

TEST(HelperOneShot, OrdersChipsByDevicePathNotByHwmonNumber) {
    // The same machine registered in two boot orders gives the same keys and fan ids.
    FakeSysfs firstBoot;
    FakeSysfs secondBoot;
    const FakeSysfs::Attributes boardA = {{"name", "it8792"}, {"fan1_input", "700"}, {"pwm1", "1"}};
    const FakeSysfs::Attributes boardB = {
        {"name", "nct6798"}, {"fan1_input", "900"}, {"pwm1", "1"}};
    firstBoot.addHwmon(0, "platform/it87.2624", boardA);
    firstBoot.addHwmon(1, "platform/nct6775.656", boardB);
    secondBoot.addHwmon(7, "platform/nct6775.656", boardB);
    secondBoot.addHwmon(2, "platform/it87.2624", boardA);
    const HelperResult first = runHelper({"--all", "--sysfs-root", firstBoot.root()});
    const HelperResult second = runHelper({"--all", "--sysfs-root", secondBoot.root()});
    EXPECT_EQ(first.output, second.output);
    EXPECT_EQ(first.output,
              R"j({"temperatures":[],"fans":[{"id":0,"actual":700,"min":0,"target":0},)j"
              R"j({"id":1,"actual":900,"min":0,"target":0}]})j"
              "\n");
}

TEST(HelperOneShot, ReadsNoSensorOfASuspendedGpu) {
    FakeSysfs sysfs;
    buildAmdDesktop(sysfs);
    const int watcher = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    ASSERT_GE(watcher, 0);
    ASSERT_GE(
        inotify_add_watch(watcher, (sysfs.root() + "/" + amdSuspendedGpuChip).c_str(), IN_OPEN), 0);
    const HelperResult result = runHelper({"--all", "--sysfs-root", sysfs.root()});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_NE(result.output.find("GPU Edge"), std::string::npos);

    // Listing the directory and reading the chip's name are served by the hwmon core
    // without waking the device; any other file would reach the driver.
    std::vector<std::string> opened;
    std::array<char, 4096> buffer{};
    const ssize_t count = read(watcher, buffer.data(), buffer.size());
    for (ssize_t offset = 0; offset < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
        if ((event->mask & IN_ISDIR) == 0)
            opened.emplace_back(event->len > 0 ? event->name : "");
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    EXPECT_EQ(opened, std::vector<std::string>{"name"});
    close(watcher);
}

TEST(HelperOneShot, IgnoresWhatLiesOutsideSysDevicesAndKeepsTheAnswerValidJson) {
    FakeSysfs sysfs;
    // A class entry leading out of sys/devices is not a chip.
    sysfs.write("elsewhere/hwmon/hwmon9/name", "evil\n");
    sysfs.write("elsewhere/hwmon/hwmon9/temp1_input", "99000\n");
    sysfs.link("../../../elsewhere/hwmon/hwmon9", "sys/class/hwmon/hwmon9");
    // Nor is one whose path under sys/devices passes through a link that leads out of it.
    sysfs.write("outside/hwmon/hwmon7/name", "escaped\n");
    sysfs.write("outside/hwmon/hwmon7/temp1_input", "77000\n");
    sysfs.link("../../outside", "sys/devices/escape");
    sysfs.link("../../devices/escape/hwmon/hwmon7", "sys/class/hwmon/hwmon7");
    // Attributes that are symlinks or FIFOs are never read (nor waited on).
    const std::string chip = sysfs.addHwmon(1, "platform/odd.0",
                                            {{"name", "we\"ird\\\x01"},
                                             {"temp2_input", "42000"},
                                             {"temp2_label", "h\xc3\xa9"
                                                             "at\t"}});
    sysfs.write("secret", "12345\n");
    sysfs.link("../../../../../../secret", chip + "/temp1_input");
    ASSERT_EQ(mkfifo((sysfs.root() + "/" + chip + "/temp3_input").c_str(), 0644), 0);
    // A chip without a name is skipped.
    sysfs.addHwmon(2, "platform/nameless.0", {{"temp1_input", "50000"}});

    const HelperResult result = runHelper({"--all", "--sysfs-root", sysfs.root()});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, R"j({"temperatures":[{"key":"hwmon/we\"ird\\\u0001/odd.0/temp2",)j"
                             R"j("label":"we\"ird\\\u0001 h??at","value":42}],"fans":[]})j"
                             "\n");
}

TEST(HelperOneShot, ReportsUsageErrorsOnStandardError) {
    const std::vector<std::vector<std::string>> wrong = {
        {}, {"--all", "--daemon"}, {"--verbose"}, {"--all", "--sysfs-root"}};
    for (const auto& arguments : wrong) {
        const HelperResult result = runHelper(arguments);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors,
                  "smc_helper: usage: smc_helper --all | --daemon [--sysfs-root DIR]\n");
    }
    const HelperResult missingRoot = runHelper({"--all", "--sysfs-root", "/nonexistent/root"});
    EXPECT_EQ(missingRoot.exitStatus, 2);
    EXPECT_EQ(missingRoot.errors, "smc_helper: cannot open the sysfs root\n");
}

} // namespace
