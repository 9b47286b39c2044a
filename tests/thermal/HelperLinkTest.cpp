// Running smc_helper: stand-in helpers that misbehave as broken ones do must give empty
// readings, leave nothing running and never take Vorlune down; stand-in daemons record
// the commands they get, die or stop listening.
#include "monitors/ThermalAnswerDecoder.h"
#include "monitors/ThermalMonitor.h"
#include "monitors/linux/IgnoreSigpipe.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <signal.h>

#include <sstream>

namespace {

// Answers only when called as the one-shot read calls it.
std::string answering(const std::string& json) {
    return "[ \"$*\" = --all ] || exit 1\ncat <<'END'\n" + json + "\nEND\n";
}

std::string boardSensors(int count) {
    std::string json = R"({"temperatures":[)";
    for (int i = 0; i < count; ++i)
        json += (i ? ",{" : "{") + std::string(R"("key":"board/temp)") + std::to_string(i) +
                R"(","label":"Board","value":30})";
    return json + "]}";
}

// Gone, or dead and waiting for a parent that may never reap it.
bool isGone(pid_t pid) {
    const std::string stat = readFile("/proc/" + std::to_string(pid) + "/stat");
    const size_t afterName = stat.rfind(')');
    return afterName == std::string::npos || stat.compare(afterName, 3, ") Z") == 0;
}

TEST(ReadAll, BrokenHelpersGiveEmptyReadingsAndLeaveNothingRunning) {
    TempDir dir;
    const std::string pids = dir.str() + "/pids";
    const std::string good = R"({"temperatures":[{"key":"k","label":"CPU Die","value":48}],
                                 "fans":[{"id":0,"actual":1500}]})";
    const ThermalReadings decoded{48, 0, {{"k", "CPU Die", 48}}, {{0, "", 1500, {}, {}, {}}}};
    const ThermalReadings fits = decodeThermalAnswer(boardSensors(500));
    ASSERT_EQ(fits.sensors.size(), 500u);
    const struct {
        const char* name;
        std::string program; // a script body, or a path when it starts with '/'
        ThermalReadings expected;
    } cases[] = {
        {"good answer, non-zero exit", answering(good) + "exit 7\n", decoded},
        {"noise on standard error", "echo 'smc: warning' >&2\n" + answering(good), decoded},
        {"a job left holding the output",
         answering(good) + "sleep 300 &\necho $! >> " + pids + "\n", decoded},
        {"answer that fits the pipe", answering(boardSensors(500)), fits},
        {"hangs, with a job of its own",
         "echo $$ >> " + pids + "\nsleep 300 &\necho $! >> " + pids + "\n" + answering(good) +
             "exec sleep 300\n",
         emptyThermalReadings},
        {"crashes mid-answer", "printf '{\"temperatures\":[{\"key\":\"a\"'; kill -SEGV $$\n",
         emptyThermalReadings},
        {"missing", dir.str() + "/absent", emptyThermalReadings},
    };
    const ThermalMonitor monitor(dir.str() + "/installed");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string program =
            c.program.starts_with('/') ? c.program : dir.writeScript("helper", c.program).string();
        EXPECT_TRUE(monitor.readAll(program) == c.expected);
        std::istringstream started(readFile(pids));
        for (pid_t pid; started >> pid;) {
            if (c.expected == decoded)
                ::kill(pid, SIGKILL); // left running on purpose
            else
                EXPECT_TRUE(eventually([&] { return isGone(pid); })) << "still runs: " << pid;
        }
        std::filesystem::remove(pids);
    }
}

TEST(ReadResident, AServingHelperAnswersEachTickAndAnyFaultGivesWhatTheOneShotWould) {
    TempDir dir;
    const std::string good = R"({"temperatures":[{"key":"k","label":"CPU Die","value":48}]})";
    const ThermalReadings decoded{48, 0, {{"k", "CPU Die", 48}}, {}};
    // Each start notes its pid; every request is one line in and one line out.
    const auto serving = [&](const std::string& body) {
        return "[ \"$*\" = --serve ] || exec cat >/dev/null\necho $$ >> " + dir.str() + "/pids\n" +
               body;
    };
    const std::string answerLoop = "while read request; do echo '" + good + "'; done\n";
    const struct {
        const char* name;
        std::string program; // a script body, or a path when it starts with '/'
        ThermalReadings first, second;
        int starts;
    } cases[] = {
        {"one process for every tick", serving(answerLoop), decoded, decoded, 1},
        {"dies between ticks: started again", serving("read request\necho '" + good + "'\n"),
         decoded, decoded, 2},
        {"hangs: killed, then started again", serving("read request\nexec sleep 300\n"),
         emptyThermalReadings, emptyThermalReadings, 2},
        {"dies mid-answer", serving("read request\nprintf '{\"temp'\nkill -SEGV $$\n"),
         emptyThermalReadings, emptyThermalReadings, 2},
        {"1 MB answer", serving("read request\nhead -c 1048576 /dev/zero | tr '\\0' x\necho\n"),
         emptyThermalReadings, emptyThermalReadings, 2},
        {"cannot start", dir.str() + "/absent", emptyThermalReadings, emptyThermalReadings, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string program =
            c.program.starts_with('/') ? c.program : dir.writeScript("helper", c.program).string();
        {
            ThermalMonitor monitor(dir.str() + "/installed");
            EXPECT_TRUE(monitor.readResident(program) == c.first);
            // Ticks are 2 s apart: a helper that ends after answering is gone by the next.
            std::istringstream first(dir.read("pids"));
            for (pid_t pid; c.starts == 2 && first >> pid;)
                eventually([&] { return isGone(pid); });
            EXPECT_TRUE(monitor.readResident(program) == c.second);
        }
        std::istringstream started(dir.read("pids"));
        int starts = 0;
        for (pid_t pid; started >> pid; ++starts)
            EXPECT_TRUE(eventually([&] { return isGone(pid); })) << "still runs: " << pid;
        EXPECT_EQ(starts, c.starts);
        std::filesystem::remove(dir.path() / "pids");
    }
}

class Daemon : public testing::Test {
protected:
    void SetUp() override { ignoreSigpipe(); }

    // A stand-in at the installed path that leaves its pid in `pid`; the tests run as root,
    // so with mode 4755 it counts as installed.
    void install(const std::string& body, mode_t mode = 04755) {
        dir.writeScript(
            installed,
            "[ \"$*\" = --daemon ] || exit 1\ncd " + dir.str() + "\necho $$ > pid\n" + body, mode);
    }
    void killDaemon() { ASSERT_EQ(::kill(std::stoi(dir.read("pid")), SIGKILL), 0); }

    // Says it is ready in two pieces, then appends every line it gets to `commands`.
    const std::string recorder = "printf rea\nsleep 0.2\nprintf 'dy\\n'\nexec cat >> commands\n";

    TempDir dir;
    const std::string installed = dir.str() + "/bin/vorlune_smc_helper";
    ThermalMonitor monitor{installed, "/bin/false"};
};

TEST_F(Daemon, CommandsAreFormattedAndEndWithQuit) {
    install(recorder, 0755);
    EXPECT_FALSE(monitor.startDaemon()) << "not set-user-ID: not installed";
    EXPECT_EQ(dir.read("pid"), "") << "nothing was launched";
    install(recorder);
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0")) << "no daemon yet";
    ASSERT_TRUE(monitor.startDaemon());
    const std::string first = dir.read("pid");
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_EQ(dir.read("pid"), first) << "a running daemon is reused";
    EXPECT_TRUE(monitor.setAllFans({}));
    EXPECT_TRUE(monitor.setAllFans({{"hwmon/b/d/fan2", 2400.6}, {"hwmon/a/d/fan1", 1800.4}}));
    EXPECT_TRUE(monitor.setFanSpeed("hwmon/a/d/fan1", 2999.5));
    // A fan with a maximum gets a speed, one without gets the duty itself, and one
    // without a key is never named.
    const std::vector<FanInfo> fans = {{0, "hwmon/a/d/fan1", 900, {}, 5000, {}},
                                       {1, "hwmon/a/d/fan2", 900, {}, {}, {}},
                                       {2, "", 900, {}, 3000, {}}};
    EXPECT_TRUE(monitor.driveFans(fanDrives(fans, {{0, 50.5}, {1, 40}, {2, 30}})));
    EXPECT_TRUE(monitor.driveFans({}));
    monitor.stopDaemon();
    monitor.stopDaemon();
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
    {
        ThermalMonitor goingAway(installed);
        ASSERT_TRUE(goingAway.startDaemon());
    } // Vorlune quitting must hand the fans back too.
    EXPECT_EQ(dir.read("commands"), "set-all hwmon/a/d/fan1=1800 hwmon/b/d/fan2=2401\n"
                                    "set-fan hwmon/a/d/fan1 3000\n"
                                    "set-duty hwmon/a/d/fan2 40\n"
                                    "set-all hwmon/a/d/fan1=2525\n"
                                    "quit\nquit\n");
}

TEST_F(Daemon, ADaemonThatIgnoresQuitIsAskedToTerminateAndNotWaitedOnForever) {
    install("trap 'echo terminated > ended; exit 0' TERM\necho ready\n"
            "while :; do sleep 0.1; done\n");
    ASSERT_TRUE(monitor.startDaemon());
    monitor.stopDaemon();
    EXPECT_EQ(dir.read("ended"), "terminated\n");
    EXPECT_FALSE(monitor.isDaemonRunning());
}

TEST_F(Daemon, ARefusingDaemonIsNotUsedAndItsReasonIsKept) {
    install("echo 'refused: another fan daemon is running'\nexec cat >/dev/null\n");
    EXPECT_FALSE(monitor.startDaemon());
    EXPECT_EQ(monitor.daemonProblem(), "refused: another fan daemon is running");
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
}

TEST_F(Daemon, DeadOrDeafDaemonIsReportedAndCommandsFailWithoutHarm) {
    install(recorder);
    ASSERT_TRUE(monitor.startDaemon());
    killDaemon();
    EXPECT_TRUE(eventually([&] { return !monitor.isDaemonRunning(); }));
    EXPECT_FALSE(monitor.setFanSpeed("hwmon/a/d/fan1", 1000));
    // The death is noticed once, and a daemon is run once more to restore the fans.
    EXPECT_TRUE(monitor.checkDaemon());
    EXPECT_FALSE(monitor.checkDaemon());
    EXPECT_EQ(monitor.daemonProblem(), "the fan daemon stopped unexpectedly (signal 9); the fans "
                                       "were handed back to automatic control");
    ASSERT_TRUE(monitor.startDaemon()) << "a dead daemon is replaced";
    EXPECT_EQ(monitor.daemonProblem(), "");
    EXPECT_TRUE(monitor.setFanSpeed("hwmon/a/d/fan1", 1200));
    monitor.stopDaemon();
    EXPECT_EQ(dir.read("commands"), "quit\nset-fan hwmon/a/d/fan1 1200\nquit\n");

    // A daemon that ends before its ready line is given up on at once, not waited for.
    install("exit 3\n");
    EXPECT_FALSE(monitor.startDaemon());
    EXPECT_EQ(monitor.daemonProblem(), "the fan daemon did not start");

    // Closes its input and lives on; SIGPIPE at its default action must not end us.
    signal(SIGPIPE, SIG_DFL);
    install("exec 0<&-\necho ready\nexec sleep 300\n");
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_TRUE(monitor.isDaemonRunning());
    EXPECT_FALSE(monitor.sendCommand("set-fan hwmon/a/d/fan1 1000"));
    killDaemon();
    monitor.stopDaemon();
    ignoreSigpipe();
}

} // namespace
