#include "ScratchDir.h"
#include "monitors/ThermalMonitor.h"
#include "monitors/linux/IgnoreSigpipe.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

class Daemon : public testing::Test {
protected:
    void SetUp() override { ignoreSigpipe(); }

    // Installs a stand-in daemon: root-owned, mode 4755, at the installed path.
    void install(const std::string& body, mode_t mode = 04755) {
        dir.writeScript(installed,
                        "[ \"$#\" = 1 ] && [ \"$1\" = --daemon ] || exit 1\necho $$ >> " +
                            starts.string() + "\n" + body,
                        mode);
    }
    // A daemon that announces itself and appends every command it gets to `commands`.
    void installRecorder() { install("echo ready\nexec cat >> " + commands.string() + "\n"); }

    std::vector<pid_t> started() const {
        std::istringstream lines(readFile(starts));
        std::vector<pid_t> pids;
        for (pid_t pid; lines >> pid;)
            pids.push_back(pid);
        return pids;
    }
    // Kills the daemon and waits until it has died, without reaping it.
    void killDaemon(pid_t pid) {
        ASSERT_EQ(::kill(pid, SIGKILL), 0);
        siginfo_t info{};
        ASSERT_EQ(waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT), 0);
    }

    ScratchDir dir;
    const std::filesystem::path installed = dir.path() / "bin/vorlune_smc_helper";
    const std::filesystem::path starts = dir.path() / "starts";
    const std::filesystem::path commands = dir.path() / "commands";
    ThermalMonitor monitor{installed.string(), "/bin/false"};
};

TEST_F(Daemon, KeepsItsConstructorPaths) {
    EXPECT_EQ(monitor.installedHelperPath(), installed.string());
    EXPECT_EQ(monitor.elevationProgram(), "/bin/false");
    const ThermalMonitor defaults;
    EXPECT_EQ(defaults.installedHelperPath(), "/usr/local/bin/vorlune_smc_helper");
    EXPECT_EQ(defaults.elevationProgram(), "/usr/bin/pkexec");
}

TEST_F(Daemon, InstalledMeansRootOwnedSetuidExecutableFile) {
    const passwd* nobody = getpwnam("nobody");
    ASSERT_NE(nobody, nullptr);
    const struct {
        const char* name;
        mode_t mode;
        uid_t owner;
        bool installed;
    } cases[] = {
        {"root 4755", 04755, 0, true},
        {"root 4711", 04711, 0, true},
        {"root 0755", 0755, 0, false},
        {"root 4644", 04644, 0, false},
        {"nobody 4755", 04755, nobody->pw_uid, false},
    };
    for (const auto& c : cases) {
        install("exit 0\n");
        ASSERT_EQ(::chown(installed.c_str(), c.owner, 0), 0);
        ASSERT_EQ(::chmod(installed.c_str(), c.mode), 0); // chown clears the setuid bit
        EXPECT_EQ(monitor.isHelperInstalled(), c.installed) << c.name;
    }

    std::filesystem::remove(installed);
    EXPECT_FALSE(monitor.isHelperInstalled()) << "missing";
    std::filesystem::create_directories(installed);
    ASSERT_EQ(::chmod(installed.c_str(), 04755), 0);
    EXPECT_FALSE(monitor.isHelperInstalled()) << "directory";
    std::filesystem::remove(installed);
    const auto target = dir.writeScript("real_helper", "exit 0\n", 04755);
    std::filesystem::create_symlink(target, installed);
    EXPECT_FALSE(monitor.isHelperInstalled()) << "symlink";
}

TEST_F(Daemon, NotInstalledLaunchesNothing) {
    install("echo ready\nexec cat > /dev/null\n", 0755);
    EXPECT_FALSE(monitor.startDaemon());
    EXPECT_TRUE(started().empty());
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
}

TEST_F(Daemon, CommandLinesAreFormattedAndEndWithQuit) {
    installRecorder();
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_TRUE(monitor.setAllFans({}));
    EXPECT_TRUE(monitor.setAllFans({{0, 1800.4}, {2, 2400.6}}));
    EXPECT_TRUE(monitor.setFanSpeed(1, 2999.5));
    EXPECT_TRUE(monitor.setFanSpeed(0, 2500.5)); // "%.0f" rounds a tie to even
    EXPECT_TRUE(monitor.setAllFans({{1, 0.4}}));
    EXPECT_TRUE(monitor.sendCommand("fan-auto 0"));
    monitor.stopDaemon();
    EXPECT_EQ(readFile(commands), "set-all 0\n"
                                  "set-all 1800 0 2401\n"
                                  "set-fan 1 3000\n"
                                  "set-fan 0 2500\n"
                                  "set-all 0 0\n"
                                  "fan-auto 0\n"
                                  "quit\n");
}

TEST_F(Daemon, RunningDaemonIsReused) {
    installRecorder();
    ASSERT_TRUE(monitor.startDaemon());
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_EQ(started().size(), 1u);
}

TEST_F(Daemon, StopWithoutDaemonReturnsAndCommandsFail) {
    installRecorder();
    monitor.stopDaemon();
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
    EXPECT_FALSE(monitor.setFanSpeed(0, 1000));

    ASSERT_TRUE(monitor.startDaemon());
    monitor.stopDaemon();
    monitor.stopDaemon();
    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_EQ(started().size(), 2u);
}

TEST_F(Daemon, CommandsFromSeveralThreadsArriveWholeAndInOrder) {
    installRecorder();
    // Started on one thread, written to from others.
    bool running = false;
    std::thread([&] { running = monitor.startDaemon(); }).join();
    ASSERT_TRUE(running);

    // Lines longer than the pipe's atomic write size, so only the lock keeps them whole.
    constexpr int threads = 4, linesPerThread = 25, fans = 1500;
    std::vector<std::thread> senders;
    for (int t = 0; t < threads; ++t) {
        senders.emplace_back([&, t] {
            for (int i = 0; i < linesPerThread; ++i) {
                std::map<long long, double> rpm;
                for (int fan = 0; fan < fans; ++fan)
                    rpm[fan] = t * 1000 + i;
                EXPECT_TRUE(monitor.setAllFans(rpm));
            }
        });
    }
    for (std::thread& sender : senders)
        sender.join();
    monitor.stopDaemon();

    std::istringstream lines(readFile(commands));
    std::vector<int> nextOfThread(threads, 0);
    std::string line;
    int count = 0;
    while (std::getline(lines, line) && line != "quit") {
        std::istringstream words(line);
        std::string verb;
        words >> verb;
        ASSERT_EQ(verb, "set-all");
        std::vector<int> values;
        for (int value; words >> value;)
            values.push_back(value);
        ASSERT_EQ(values.size(), static_cast<size_t>(fans)) << "line " << count;
        ASSERT_EQ(std::count(values.begin(), values.end(), values[0]), fans) << "line " << count;
        const int t = values[0] / 1000, i = values[0] % 1000;
        ASSERT_LT(t, threads);
        EXPECT_EQ(i, nextOfThread[t]++) << "thread " << t << " out of order";
        ++count;
    }
    EXPECT_EQ(count, threads * linesPerThread);
    EXPECT_EQ(line, "quit");
}

TEST_F(Daemon, KilledDaemonRefusesCommandsAndIsReplacedOnStart) {
    installRecorder();
    ASSERT_TRUE(monitor.startDaemon());
    ASSERT_EQ(started().size(), 1u);
    killDaemon(started()[0]);

    EXPECT_FALSE(monitor.sendCommand("fan-auto 0"));
    EXPECT_FALSE(monitor.setAllFans({{0, 1000}}));

    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_EQ(started().size(), 2u);
    EXPECT_TRUE(monitor.setFanSpeed(0, 1200));
    monitor.stopDaemon();
    EXPECT_EQ(readFile(commands), "set-fan 0 1200\nquit\n");
}

TEST_F(Daemon, WriteToDaemonThatClosedItsInputFails) {
    // SIGPIPE at its default action: the write alone must keep the process alive.
    signal(SIGPIPE, SIG_DFL);
    install("exec 0<&-\necho ready\nexec sleep 300\n");
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_FALSE(monitor.sendCommand("set-fan 0 1000"));
    killDaemon(started().at(0));
    monitor.stopDaemon();
}

TEST_F(Daemon, ReadyLineMayArriveInPieces) {
    install("printf 'rea'\nsleep 0.3\nprintf 'dy\\n'\nexec cat >> " + commands.string() + "\n");
    const auto begun = std::chrono::steady_clock::now();
    ASSERT_TRUE(monitor.startDaemon());
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
    EXPECT_TRUE(monitor.sendCommand("fan-auto 1"));
    monitor.stopDaemon();
    EXPECT_EQ(readFile(commands), "fan-auto 1\nquit\n");
}

TEST_F(Daemon, SilentDaemonIsWaitedForFifteenSecondsThenUsed) {
    install("exec cat >> " + commands.string() + "\n");
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_TRUE(monitor.startDaemon());
    EXPECT_GE(std::chrono::steady_clock::now() - begun, 15s);
    EXPECT_TRUE(monitor.sendCommand("fan-auto 0"));
    monitor.stopDaemon();
    EXPECT_EQ(readFile(commands), "fan-auto 0\nquit\n");
}

TEST(DaemonDeathTest, NegativeLargestFanIdStopsTheProgram) {
    ThermalMonitor monitor("/nonexistent/vorlune_smc_helper");
    EXPECT_DEATH(monitor.setAllFans({{-2, 1000}, {-1, 1000}}), "must not be negative");
}

} // namespace
