#include "support/FakeMachines.h"
#include "support/FakeSysfs.h"
#include "support/HelperProcess.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

const std::string board = intelBoardChip;
const std::string coretemp = intelCoretempChip;

long long valueOf(const FakeSysfs& sysfs, const std::string& path) {
    return firstInteger(sysfs.read(path));
}

// Waits until every file holds its value; reports the first that does not.
::testing::AssertionResult settlesTo(const FakeSysfs& sysfs,
                                     const std::map<std::string, long long>& expected) {
    const bool settled = eventually([&] {
        for (const auto& [path, value] : expected) {
            if (valueOf(sysfs, path) != value)
                return false;
        }
        return true;
    });
    if (settled)
        return ::testing::AssertionSuccess();
    for (const auto& [path, value] : expected) {
        if (valueOf(sysfs, path) != value)
            return ::testing::AssertionFailure()
                   << path << " is " << valueOf(sysfs, path) << ", expected " << value;
    }
    return ::testing::AssertionFailure();
}

const std::map<std::string, long long> boardAsFound = {{board + "/pwm1", 77},
                                                       {board + "/pwm1_enable", 5},
                                                       {board + "/pwm2", 153},
                                                       {board + "/pwm2_enable", 5}};

/// Records which files of a directory are modified, in order, merging repeats.
class WriteLog {
public:
    explicit WriteLog(const std::string& dir) : fd_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        inotify_add_watch(fd_, dir.c_str(), IN_MODIFY);
    }
    ~WriteLog() { close(fd_); }
    std::vector<std::string> names() {
        std::array<char, 65536> buffer{};
        const ssize_t count = read(fd_, buffer.data(), buffer.size());
        for (ssize_t offset = 0; offset < count;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            const std::string name = event->name;
            if (names_.empty() || names_.back() != name)
                names_.push_back(name);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return names_;
    }

private:
    int fd_;
    std::vector<std::string> names_;
};

TEST(HelperDaemon, DrivesPwmFansAndRestoresThemValueFirstOnQuit) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    DaemonProcess daemon(sysfs.root());
    ASSERT_EQ(daemon.readyLine(), "ready");
    // Taking fans must not wait for anything: the board's floating CPUTIN reads 98 °C.

    daemon.send("set-fan 1 3000\n");
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm2", 128}, {board + "/pwm2_enable", 1}}));
    EXPECT_EQ(valueOf(sysfs, board + "/pwm1"), 77);
    EXPECT_EQ(valueOf(sysfs, board + "/pwm1_enable"), 5);

    WriteLog driveLog(sysfs.root() + "/" + board);
    daemon.send("set-all 2400 0 0\n"); // fan 2 has no control and is passed over
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 102},
                                  {board + "/pwm1_enable", 1},
                                  {board + "/pwm2", 0},
                                  {board + "/pwm2_enable", 1}}));
    EXPECT_EQ(driveLog.names(),
              (std::vector<std::string>{"pwm1_enable", "pwm1", "pwm2_enable", "pwm2"}));

    WriteLog restoreLog(sysfs.root() + "/" + board);
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
    EXPECT_TRUE(settlesTo(sysfs, boardAsFound));
    EXPECT_EQ(restoreLog.names(),
              (std::vector<std::string>{"pwm1", "pwm1_enable", "pwm2", "pwm2_enable"}));
    EXPECT_EQ(daemon.lateOutput(), "");
    EXPECT_EQ(daemon.errors(), "");
}

TEST(HelperDaemon, EveryWayOfEndingHandsTheFansBack) {
    struct Ending {
        std::string name;
        int signal; // 0: by input
        std::string input;
        int exitStatus;
    };
    const std::vector<Ending> endings = {
        {"quit", 0, "quit\n", 0},
        {"end of input", 0, "", 0},
        {"end of input after half a line", 0, "set-fan 0 1", 0},
        {"SIGTERM", SIGTERM, "", 128 + SIGTERM},
        {"SIGINT", SIGINT, "", 128 + SIGINT},
        {"SIGHUP", SIGHUP, "", 128 + SIGHUP},
        {"SIGQUIT", SIGQUIT, "", 128 + SIGQUIT},
    };
    for (const Ending& ending : endings) {
        SCOPED_TRACE(ending.name);
        FakeSysfs sysfs;
        buildIntelDesktop(sysfs);
        DaemonProcess daemon(sysfs.root());
        ASSERT_EQ(daemon.readyLine(), "ready");
        daemon.send("set-all 6000 6000\n");
        ASSERT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 255}, {board + "/pwm2", 255}}));
        if (ending.signal != 0) {
            kill(daemon.pid(), ending.signal);
        } else {
            daemon.send(ending.input);
            daemon.closeInput();
        }
        EXPECT_EQ(daemon.waitForExit(), ending.exitStatus);
        EXPECT_TRUE(settlesTo(sysfs, boardAsFound));
    }
}

TEST(HelperDaemon, FanAutoHandsBackOneFanAndALaterCommandTakesItAgain) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    DaemonProcess daemon(sysfs.root());
    ASSERT_EQ(daemon.readyLine(), "ready");
    daemon.send("set-all 3000 3000\n");
    ASSERT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 128}, {board + "/pwm2", 128}}));
    daemon.send("fan-auto 0\n");
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 77}, {board + "/pwm1_enable", 5}}));
    EXPECT_EQ(valueOf(sysfs, board + "/pwm2"), 128);
    EXPECT_EQ(valueOf(sysfs, board + "/pwm2_enable"), 1);

    // Meanwhile the board's automatic control moves the duty; that is what comes back.
    sysfs.write(board + "/pwm1", "90\n");
    daemon.send("fan-auto 0\nset-fan 0 6000\n");
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 255}, {board + "/pwm1_enable", 1}}));
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 90},
                                  {board + "/pwm1_enable", 5},
                                  {board + "/pwm2", 153},
                                  {board + "/pwm2_enable", 5}}));
}

TEST(HelperDaemon, RefusesBadCommandsWithOneLineEachAndKeepsRunning) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    DaemonProcess daemon(sysfs.root());
    ASSERT_EQ(daemon.readyLine(), "ready");
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"set-fan 3 1000", "smc_helper: refused: fan id out of range"},
        {"fan-auto 9", "smc_helper: refused: fan id out of range"},
        {"set-fan 2 1000", "smc_helper: refused: fan 2 cannot be controlled"},
        {"set-all 1 2 3 4", "smc_helper: refused: more speeds than fans"},
        {"set-fan 0 -1", "smc_helper: refused: negative number"},
        {"set-fan 0 1.5", "smc_helper: refused: not a decimal number"},
        {"set-fan 0 99999999999", "smc_helper: refused: number too large"},
        {"hello", "smc_helper: refused: unknown command"},
        {"quit please", "smc_helper: refused: wrong number of arguments for quit"},
        {std::string(300, 'q') + " quit", "smc_helper: refused: line longer than 128 bytes"},
    };
    std::string expectedErrors;
    for (const auto& [line, message] : refused) {
        daemon.send(line + "\n");
        expectedErrors += message + "\n";
        ASSERT_TRUE(daemon.waitForError(message)) << line;
    }
    EXPECT_EQ(daemon.errors(), expectedErrors);
    EXPECT_TRUE(daemon.running());
    for (const auto& [path, value] : boardAsFound)
        EXPECT_EQ(valueOf(sysfs, path), value) << path;

    daemon.send("set-fan 0 6000\n");
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 255}, {board + "/pwm1_enable", 1}}));
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
    EXPECT_TRUE(settlesTo(sysfs, boardAsFound));
}

TEST(HelperDaemon, HotCpuHandsEveryFanBackAndRefusesCommandsUntilItCools) {
    struct Case {
        std::string name;
        std::string sensor;
        std::string critical; // empty: leave the fixture's 100 °C
        std::string hot;
        std::string warm; // cooler, but not cool enough to release
        std::string cool;
    };
    const std::vector<Case> cases = {
        {"fixed 95 °C", "temp1", "", "95000", "85000", "84999"},
        {"critical trip - 5 °C", "temp2", "90000", "85000", "75000", "74999"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FakeSysfs sysfs;
        buildIntelDesktop(sysfs);
        if (!c.critical.empty())
            sysfs.write(coretemp + "/" + c.sensor + "_crit", c.critical + "\n");
        const std::string input = coretemp + "/" + c.sensor + "_input";
        DaemonProcess daemon(sysfs.root());
        ASSERT_EQ(daemon.readyLine(), "ready");
        daemon.send("set-all 6000 6000\n");
        ASSERT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 255}, {board + "/pwm2", 255}}));

        sysfs.write(input, c.hot + "\n");
        EXPECT_TRUE(daemon.waitForError("CPU too hot: every fan handed back"));
        EXPECT_TRUE(settlesTo(sysfs, boardAsFound));

        sysfs.write(input, c.warm + "\n");
        daemon.send("set-fan 0 6000\n");
        EXPECT_TRUE(daemon.waitForError("refused: the CPU is too hot for manual fan control"));
        EXPECT_EQ(valueOf(sysfs, board + "/pwm1"), 77);

        sysfs.write(input, c.cool + "\n");
        EXPECT_TRUE(daemon.waitForError("CPU cooled down"));
        daemon.send("set-fan 0 6000\n");
        EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 255}, {board + "/pwm1_enable", 1}}));
        daemon.send("quit\n");
        EXPECT_EQ(daemon.waitForExit(), 0);
    }
}

TEST(HelperDaemon, DrivesEachKindOfControlAsItsChipExpects) {
    struct Case {
        std::string name;
        void (*build)(FakeSysfs&);
        std::string command;
        std::map<std::string, long long> driven;
        std::map<std::string, long long> restored;
    };
    const std::string smc = macSmcDevice;
    const std::string thinkpad = "sys/devices/platform/thinkpad_hwmon/hwmon/hwmon3";
    const std::string gpu = "sys/devices/pci0000:00/0000:00:03.1/0000:0a:00.0/hwmon/hwmon0";
    const std::vector<Case> cases = {
        // No fanN_max: the duty is taken against 6000 RPM, as the application assumes.
        {"thinkpad",
         buildThinkPad,
         "set-fan 0 3000",
         {{thinkpad + "/pwm1", 128}, {thinkpad + "/pwm1_enable", 1}},
         {{thinkpad + "/pwm1", 102}, {thinkpad + "/pwm1_enable", 2}}},
        // amdgpu reports 3300 RPM as its maximum; the GPU fan is fan 1, after the board's.
        {"amdgpu",
         buildAmdDesktop,
         "set-fan 1 1650",
         {{gpu + "/pwm1", 128}, {gpu + "/pwm1_enable", 1}, {gpu + "/fan1_target", 1500}},
         {{gpu + "/pwm1", 90}, {gpu + "/pwm1_enable", 2}}},
        {"amdgpu above its maximum",
         buildAmdDesktop,
         "set-fan 1 9000",
         {{gpu + "/pwm1", 255}},
         {{gpu + "/pwm1", 90}, {gpu + "/pwm1_enable", 2}}},
        // applesmc takes RPM through fanN_output once fanN_manual is set.
        {"applesmc",
         buildMacBook,
         "set-all 3100 9999",
         {{smc + "/fan1_manual", 1},
          {smc + "/fan1_output", 3100},
          {smc + "/fan2_manual", 1},
          {smc + "/fan2_output", 5800}},
         {{smc + "/fan1_manual", 0},
          {smc + "/fan1_output", 2000},
          {smc + "/fan2_manual", 0},
          {smc + "/fan2_output", 2000}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FakeSysfs sysfs;
        c.build(sysfs);
        DaemonProcess daemon(sysfs.root());
        ASSERT_EQ(daemon.readyLine(), "ready");
        daemon.send(c.command + "\n");
        EXPECT_TRUE(settlesTo(sysfs, c.driven));
        daemon.send("quit\n");
        EXPECT_EQ(daemon.waitForExit(), 0);
        EXPECT_TRUE(settlesTo(sysfs, c.restored));
        EXPECT_EQ(daemon.errors(), "");
    }
}

TEST(HelperDaemon, AWriteErrorHandsEveryFanBackAndTheDaemonCarriesOn) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    sysfs.write(board + "/pwm2", "53\n");
    DaemonProcess daemon(sysfs.root());
    ASSERT_EQ(daemon.readyLine(), "ready");
    daemon.send("set-fan 1 6000\n");
    ASSERT_TRUE(settlesTo(sysfs, {{board + "/pwm2", 255}, {board + "/pwm2_enable", 1}}));

    // With files capped at 3 bytes, "1\n" and "77\n" still fit but "128\n" cannot. Only the
    // soft limit moves, so no CAP_SYS_RESOURCE is needed to lift it again.
    rlimit original{};
    ASSERT_EQ(prlimit(daemon.pid(), RLIMIT_FSIZE, nullptr, &original), 0);
    rlimit small{3, original.rlim_max};
    ASSERT_EQ(prlimit(daemon.pid(), RLIMIT_FSIZE, &small, nullptr), 0);
    daemon.send("set-fan 0 3000\n");
    EXPECT_TRUE(daemon.waitForError("writing fan 0 failed; handing every fan back"));
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 77},
                                  {board + "/pwm1_enable", 5},
                                  {board + "/pwm2", 53},
                                  {board + "/pwm2_enable", 5}}));

    ASSERT_EQ(prlimit(daemon.pid(), RLIMIT_FSIZE, &original, nullptr), 0);
    daemon.send("set-fan 0 3000\n");
    EXPECT_TRUE(settlesTo(sysfs, {{board + "/pwm1", 128}, {board + "/pwm1_enable", 1}}));
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
}

TEST(HelperDaemon, RunsAFanAtFullSpeedWhenItsStateCannotBeRestored) {
    // A closed-loop chip whose firmware left a target above the reported maximum: the
    // restoring write of "15000" no longer fits once files are capped at 5 bytes, while
    // full speed ("9000") still does.
    FakeSysfs sysfs;
    const std::string chip = sysfs.addHwmon(0, "platform/max31790.0",
                                            {{"name", "max31790"},
                                             {"fan1_input", "4000"},
                                             {"fan1_max", "9000"},
                                             {"fan1_target", "15000"}});
    DaemonProcess daemon(sysfs.root());
    ASSERT_EQ(daemon.readyLine(), "ready");
    daemon.send("set-fan 0 1000\n");
    ASSERT_TRUE(settlesTo(sysfs, {{chip + "/fan1_target", 1000}}));
    rlimit original{};
    ASSERT_EQ(prlimit(daemon.pid(), RLIMIT_FSIZE, nullptr, &original), 0);
    rlimit small{5, original.rlim_max};
    ASSERT_EQ(prlimit(daemon.pid(), RLIMIT_FSIZE, &small, nullptr), 0);
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 1);
    EXPECT_EQ(valueOf(sysfs, chip + "/fan1_target"), 9000);
    EXPECT_EQ(daemon.errors(),
              "smc_helper: fan 0 could not be restored; running it at full speed\n");
}

} // namespace
