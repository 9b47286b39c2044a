// `smc_helper --daemon`: what it writes to fan controls, that every fan goes back as it
// was found however the daemon lets go, and what it keeps of its caller's privileges.
#include "support/FakeMachines.h"
#include "support/HelperProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/inotify.h>
#include <sys/resource.h>

namespace fs = std::filesystem;

namespace {

// The board's fans by the keys the daemon's commands name them with.
const std::string fan1 = "hwmon/nct6798/nct6775.656/fan1";
const std::string fan2 = "hwmon/nct6798/nct6775.656/fan2";
const std::string fan5 = "hwmon/nct6798/nct6775.656/fan5"; // no control

std::string duty(const std::string& fan, int percent) {
    return "set-duty " + fan + " " + std::to_string(percent) + "\n";
}

const FakeSysfs::Attributes boardAsFound = {"pwm1=77", "pwm1_enable=5", "pwm2=153",
                                            "pwm2_enable=5"};

// A daemon started over a fake machine; commands sent early wait in its input.
struct Daemon {
    explicit Daemon(const std::function<void(const FakeSysfs&)>& build = buildIntelDesktop)
        : process((build(sysfs), sysfs.root())) {}

    // Waits until each file in `dir` holds its value; names one that does not.
    ::testing::AssertionResult settlesTo(const FakeSysfs::Attributes& expected,
                                         const std::string& dir = intelBoardChip) const {
        std::string wrong;
        const bool settled = eventually([&] {
            wrong.clear();
            for (const auto& [name, value] : expected) {
                const std::string found = sysfs.read(dir + "/" + name);
                if (firstInteger(found) != firstInteger(value))
                    wrong = name + " is " + found + ", not " + value;
            }
            return wrong.empty();
        });
        return settled ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << wrong;
    }
    void send(const std::string& bytes) { process.send(bytes); }

    FakeSysfs sysfs;
    DaemonProcess process;
};

TEST(HelperDaemon, RefusesBadLinesAndFansItCannotDriveThenDrivesModeFirstAndRestoresValueFirst) {
    Daemon daemon;
    ASSERT_TRUE(daemon.process.waitForOutput("ready\n"));
    // A fan appearing after the daemon started is not one of its fans: its command is
    // refused and moves no other fan.
    daemon.sysfs.addHwmon(4, "platform/nct6775.2592",
                          {"name=nct6799", "fan2_input=950", "pwm2=100", "pwm2_enable=5"});
    // Refused lines touch nothing; an overlong line is refused whole, not run as "quit".
    daemon.send(duty(fan5, 50) + "set-fan " + fan2 + " 3000\n" +
                duty("hwmon/nct6799/nct6775.2592/fan2", 50) + "set-all " + fan1 + "=3000 " + fan2 +
                "=3000\n" + std::string(9000, 'q') + " quit\n");
    const std::string refused = "smc_helper: refused: ";
    EXPECT_TRUE(daemon.process.waitForError("line longer than 8192 bytes\n"));
    EXPECT_EQ(daemon.process.errors(),
              refused + "fan " + fan5 + " cannot be controlled\n" + refused + "fan " + fan2 +
                  " reports no maximum; set its duty\n" + refused +
                  "unknown fan hwmon/nct6799/nct6775.2592/fan2\n" + refused + "fan " + fan1 +
                  " reports no maximum; set its duty\n" + refused +
                  "line longer than 8192 bytes\n");
    EXPECT_TRUE(daemon.settlesTo(boardAsFound));
    EXPECT_EQ(daemon.sysfs.read("sys/devices/platform/nct6775.2592/hwmon/hwmon4/pwm2"), "100\n");

    daemon.send(duty(fan2, 50));
    EXPECT_TRUE(daemon.settlesTo({"pwm1=77", "pwm1_enable=5", "pwm2=128", "pwm2_enable=1"}));
    FileWatch driving(daemon.sysfs.root() + "/" + intelBoardChip, IN_MODIFY);
    // 0 is raised to 20 %, duty 51: no command stops a fan.
    daemon.send(duty(fan1, 40) + duty(fan2, 0));
    EXPECT_TRUE(daemon.settlesTo({"pwm1=102", "pwm1_enable=1", "pwm2=51", "pwm2_enable=1"}));
    EXPECT_TRUE(daemon.process.waitForError("fan " + fan2 + " held at its minimum of 20 %"));
    EXPECT_EQ(driving.names(),
              (std::vector<std::string>{"pwm1_enable", "pwm1", "pwm2_enable", "pwm2"}));
    // Restoring the mode first would let drivers such as thinkpad_acpi take the duty
    // written after it as a manual setting.
    FileWatch restoring(daemon.sysfs.root() + "/" + intelBoardChip, IN_MODIFY);
    daemon.send("quit\n");
    EXPECT_EQ(daemon.process.waitForExit(), 0);
    EXPECT_TRUE(daemon.settlesTo(boardAsFound));
    EXPECT_EQ(restoring.names(),
              (std::vector<std::string>{"pwm1", "pwm1_enable", "pwm2", "pwm2_enable"}));
    EXPECT_EQ(daemon.process.output(), "ready\n");
}

TEST(HelperDaemon, EveryWayOfLettingGoHandsTheFansBack) {
    const struct {
        std::string name;
        std::string input;
        bool closeInput;
        int signal;     // sent after the input, unless 0
        int exitStatus; // -1: the daemon carries on
    } endings[] = {
        {"quit", "quit\n", false, 0, 0},
        {"end of input", "", true, 0, 0},
        {"end of input after half a line", "set-duty " + fan1 + " 1", true, 0, 0},
        {"fan-auto for each fan", "fan-auto " + fan1 + "\nfan-auto " + fan2 + "\n", false, 0, -1},
        {"SIGTERM", "", false, SIGTERM, 128 + SIGTERM},
        {"SIGINT", "", false, SIGINT, 128 + SIGINT},
        {"SIGHUP", "", false, SIGHUP, 128 + SIGHUP},
        {"SIGQUIT", "", false, SIGQUIT, 128 + SIGQUIT},
    };
    for (const auto& ending : endings) {
        SCOPED_TRACE(ending.name);
        Daemon daemon;
        daemon.send(duty(fan1, 100) + duty(fan2, 100));
        ASSERT_TRUE(daemon.settlesTo({"pwm1=255", "pwm2=255"}));
        daemon.send(ending.input);
        if (ending.closeInput)
            daemon.process.closeInput();
        if (ending.signal != 0)
            kill(daemon.process.pid(), ending.signal);
        EXPECT_TRUE(daemon.settlesTo(boardAsFound));
        if (ending.exitStatus >= 0) {
            EXPECT_EQ(daemon.process.waitForExit(), ending.exitStatus);
        }
    }
}

TEST(HelperDaemon, HotCpuHandsEveryFanBackAndRefusesCommandsUntilItCools) {
    // Core 0, critical at 90 °C, trips the failsafe at 85 °C and releases it below 75 °C.
    const std::string core0 = std::string(intelCoretempChip) + "/temp2_input";
    Daemon daemon;
    daemon.send(duty(fan1, 100) + duty(fan2, 100));
    ASSERT_TRUE(daemon.settlesTo({"pwm1=255", "pwm2=255"}));
    daemon.sysfs.write(core0, "85000\n");
    EXPECT_TRUE(daemon.process.waitForError("CPU too hot: every fan handed back"));
    EXPECT_TRUE(daemon.settlesTo(boardAsFound));

    daemon.sysfs.write(core0, "75000\n");
    daemon.send(duty(fan1, 100));
    EXPECT_TRUE(daemon.process.waitForError("refused: fans are handed back until"));

    daemon.sysfs.write(core0, "74999\n");
    EXPECT_TRUE(daemon.process.waitForError("CPU cooled down"));
    daemon.send(duty(fan1, 100));
    EXPECT_TRUE(daemon.settlesTo({"pwm1=255", "pwm1_enable=1"}));
}

// Caps the size of files the daemon may write. Only the soft limit moves, so it can be
// lifted again without CAP_SYS_RESOURCE; returns the limit it had.
rlimit capFileSize(pid_t pid, rlim_t bytes) {
    rlimit original{};
    EXPECT_EQ(prlimit(pid, RLIMIT_FSIZE, nullptr, &original), 0);
    const rlimit small{bytes, original.rlim_max};
    EXPECT_EQ(prlimit(pid, RLIMIT_FSIZE, &small, nullptr), 0);
    return original;
}

TEST(HelperDaemon, AWriteErrorHandsEveryFanBackAndTheDaemonCarriesOn) {
    // Fan 2's duty of 53 is short enough to be written back under the cap below.
    Daemon daemon([](const FakeSysfs& sysfs) {
        buildIntelDesktop(sysfs);
        sysfs.write(std::string(intelBoardChip) + "/pwm2", "53\n");
    });
    daemon.send(duty(fan2, 100));
    ASSERT_TRUE(daemon.settlesTo({"pwm2=255", "pwm2_enable=1"}));
    // At 3 bytes "1\n" and "77\n" still fit but "128\n" does not.
    const rlimit original = capFileSize(daemon.process.pid(), 3);
    daemon.send(duty(fan1, 50));
    EXPECT_TRUE(
        daemon.process.waitForError("writing fan " + fan1 + " failed; handing every fan back"));
    EXPECT_TRUE(daemon.settlesTo({"pwm1=77", "pwm1_enable=5", "pwm2=53", "pwm2_enable=5"}));
    ASSERT_EQ(prlimit(daemon.process.pid(), RLIMIT_FSIZE, &original, nullptr), 0);
    daemon.send(duty(fan1, 50));
    EXPECT_TRUE(daemon.settlesTo({"pwm1=128", "pwm1_enable=1"}));
}

TEST(HelperDaemon, RunsAFanAtFullSpeedWhenItsStateCannotBeRestored) {
    // Firmware left a target above the fan's maximum: at 5 bytes the restoring "15000"
    // no longer fits, while full speed ("9000") still does.
    const std::string chip = "sys/devices/platform/max31790.0/hwmon/hwmon0";
    Daemon daemon([](const FakeSysfs& sysfs) {
        sysfs.addHwmon(0, "platform/max31790.0",
                       {"name=max31790", "fan1_input=4000", "fan1_max=9000", "fan1_target=15000",
                        "temp1_input=40000"});
    });
    daemon.send("set-fan hwmon/max31790/max31790.0/fan1 2000\n");
    ASSERT_TRUE(daemon.settlesTo({"fan1_target=2000"}, chip));
    capFileSize(daemon.process.pid(), 5);
    daemon.send("quit\n");
    EXPECT_EQ(daemon.process.waitForExit(), 1);
    EXPECT_TRUE(daemon.settlesTo({"fan1_target=9000"}, chip));
    EXPECT_EQ(daemon.process.errors(),
              "smc_helper: fan hwmon/max31790/max31790.0/fan1 could not be restored; running it at "
              "full speed\n");
}

TEST(HelperDaemon, KeepsOnlyItsSysfsFilesAndNoEnvironmentOfItsCaller) {
    // A descriptor and a variable the daemon must not carry along.
    const int leaked = open("/etc/passwd", O_RDONLY);
    setenv("VORLUNE_TEST_SECRET", "1", 1);
    Daemon daemon;
    close(leaked);
    unsetenv("VORLUNE_TEST_SECRET");
    // A refusal comes only after the daemon has swapped its output for /dev/null.
    daemon.send("hello\n");
    ASSERT_TRUE(daemon.process.waitForError("refused"));
    const std::string proc = "/proc/" + std::to_string(daemon.process.pid());
    std::map<int, std::string> files; // fd -> what it is open on
    for (const auto& entry : fs::directory_iterator(proc + "/fd"))
        files[std::stoi(entry.path().filename())] = fs::read_symlink(entry.path());
    EXPECT_EQ(files[1], "/dev/null");
    files.erase(files.begin(), files.upper_bound(2));
    // pwm1, pwm1_enable, pwm2, pwm2_enable, the two coretemp inputs, and the run folder
    // with its lock and state file.
    EXPECT_EQ(files.size(), 9u);
    const std::string root = fs::canonical(daemon.sysfs.root()).string();
    for (const auto& [fd, target] : files)
        EXPECT_TRUE(target.starts_with(root + "/sys/devices/") ||
                    target.starts_with(root + "/run/vorlune"))
            << fd << " -> " << target;
    EXPECT_EQ(readFile(proc + "/environ").find_first_not_of('\0'), std::string::npos);
    EXPECT_EQ(fs::read_symlink(proc + "/cwd"), "/");
    const std::string status = readFile(proc + "/status");
    EXPECT_NE(status.find("\nUmask:\t0077\n"), std::string::npos) << status;
    EXPECT_NE(status.find("\nNoNewPrivs:\t1\n"), std::string::npos) << status;
}

// Root-owned setuid copies of the helper and of id(1), run as nobody through setpriv.
class SetuidHelper : public ::testing::Test {
protected:
    void SetUp() override {
        if (getuid() != 0 || access("/usr/bin/setpriv", X_OK) != 0)
            GTEST_SKIP() << "needs root and setpriv";
        fs::permissions(dir_.path(), fs::perms(0755));
        // nosuid mounts, user namespaces, seccomp or no_new_privs can each defeat setuid.
        const std::string id = install("/usr/bin/id");
        if (runProgram("/usr/bin/setpriv", asNobody({id, "-u"})).output != "0\n")
            GTEST_SKIP() << "setuid does not take effect under /tmp";
        helper_ = install(helperBinary());
    }
    std::string install(const fs::path& from) const {
        const fs::path to = dir_.path() / from.filename();
        fs::copy_file(from, to);
        fs::permissions(to, fs::perms(04755));
        return to;
    }
    static std::vector<std::string> asNobody(std::vector<std::string> argv) {
        argv.insert(argv.begin(),
                    {"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"});
        return argv;
    }

    TempDir dir_;
    std::string helper_;
};

TEST_F(SetuidHelper, RefusesSysfsRootAndRunsAsTheCallingUserWithNoWayBack) {
    FakeSysfs sysfs;
    for (const char* mode : {"--all", "--daemon"}) {
        const HelperResult result =
            runProgram("/usr/bin/setpriv", asNobody({helper_, mode, "--sysfs-root", sysfs.root()}));
        EXPECT_EQ(result.exitStatus, 2) << mode;
        EXPECT_EQ(result.output, "") << mode;
        EXPECT_EQ(result.errors,
                  "smc_helper: --sysfs-root is refused when running with raised privileges\n");
    }
    const HelperResult result = runProgram("/usr/bin/setpriv", asNobody({helper_, "--all"}));
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output.rfind("{\"temperatures\":[", 0), 0u) << result.output;

    // Without a sensor on this machine the daemon refuses, but only once unprivileged.
    DaemonProcess daemon("/usr/bin/setpriv", asNobody({helper_, "--daemon"}));
    ASSERT_TRUE(daemon.waitForOutput("\n"));
    EXPECT_TRUE(daemon.output() == "ready\n" ||
                daemon.output().starts_with("refused: no readable temperature"))
        << daemon.output();
    const std::string status = readFile("/proc/" + std::to_string(daemon.pid()) + "/status");
    EXPECT_NE(status.find("\nUid:\t65534\t65534\t65534\t65534\n"), std::string::npos) << status;
    EXPECT_NE(status.find("\nGid:\t65534\t65534\t65534\t65534\n"), std::string::npos) << status;
    EXPECT_NE(status.find("\nNoNewPrivs:\t1\n"), std::string::npos) << status;
    daemon.send("quit\n");
    daemon.closeInput();
    EXPECT_EQ(daemon.waitForExit(), daemon.output() == "ready\n" ? 0 : 3);
}

TEST(HelperDaemon, OneDaemonAtATimeAndAKilledOnesFansComeBackFromItsStateFile) {
    Daemon daemon;
    daemon.send(duty(fan2, 50));
    ASSERT_TRUE(daemon.settlesTo({"pwm2=128", "pwm2_enable=1"}));
    DaemonProcess second(daemon.sysfs.root());
    EXPECT_TRUE(second.waitForOutput("refused: another fan daemon is running\n"));
    second.closeInput();
    EXPECT_EQ(second.waitForExit(), 3);
    EXPECT_TRUE(daemon.settlesTo({"pwm1=77", "pwm2=128", "pwm2_enable=1"}));

    // Nothing restores after SIGKILL; the next daemon does, before taking originals.
    kill(daemon.process.pid(), SIGKILL);
    daemon.process.waitForExit();
    EXPECT_TRUE(daemon.settlesTo({"pwm2=128", "pwm2_enable=1"}));
    DaemonProcess next(daemon.sysfs.root());
    EXPECT_TRUE(next.waitForOutput("ready\n"));
    EXPECT_TRUE(daemon.settlesTo(boardAsFound));
    next.send(duty(fan2, 100) + "quit\n");
    EXPECT_EQ(next.waitForExit(), 0);
    EXPECT_TRUE(daemon.settlesTo(boardAsFound));
    EXPECT_EQ(daemon.sysfs.read("run/vorlune/fans.state"), "");
}

TEST(HelperDaemon, TheFailsafeAlwaysWatchesASensorAndHandsBackWhenItCannotReadIt) {
    const auto board = [](const char* temperature) {
        return [=](const FakeSysfs& sysfs) {
            FakeSysfs::Attributes chip = {"name=nct6798", "fan2_input=900", "pwm2=153",
                                          "pwm2_enable=5"};
            if (temperature != nullptr)
                chip.emplace("temp1_input", temperature);
            sysfs.addHwmon(1, "platform/nct6775.656", chip);
        };
    };
    const struct {
        std::string name;
        std::function<void(const FakeSysfs&)> machine;
        std::string file; // written once the fan is manual, relative to the root
        std::string content;
        std::string log;
    } cases[] = {
        {"no CPU sensor: the board's", board("40000"), std::string(intelBoardChip) + "/temp1_input",
         "96000", "hottest sensor too hot: every fan handed back"},
        {"a CPU sensor unreadable three times", buildIntelDesktop,
         std::string(intelCoretempChip) + "/temp1_input", "garbage",
         "temperature unreadable: every fan handed back"},
        {"no temperature at all", board(nullptr), "", "",
         "refused: no readable temperature to guard manual fan control with"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Daemon daemon(c.machine);
        daemon.send(duty(fan2, 50));
        if (!c.file.empty()) {
            ASSERT_TRUE(daemon.settlesTo({"pwm2=128", "pwm2_enable=1"}));
            daemon.sysfs.write(c.file, c.content + "\n");
        }
        EXPECT_TRUE(daemon.process.waitForError(c.log));
        EXPECT_TRUE(daemon.settlesTo({"pwm2=153", "pwm2_enable=5"}));
    }
}

} // namespace
