#pragma once

#include "FanDrive.h"
#include "ThermalReadings.h"
#include "ThermalState.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The application's side of the link to smc_helper: locating the one-shot
/// helper, reading it, and the privileged fan-control daemon.
class ThermalMonitor {
public:
    static constexpr const char* defaultInstalledHelperPath = "/usr/local/bin/vorlune_smc_helper";
    static constexpr const char* defaultElevationProgram = "/usr/bin/pkexec";

    explicit ThermalMonitor(std::string installedHelperPath = defaultInstalledHelperPath,
                            std::string elevationProgram = defaultElevationProgram);
    ~ThermalMonitor();
    ThermalMonitor(const ThermalMonitor&) = delete;
    ThermalMonitor& operator=(const ThermalMonitor&) = delete;

    /// The one-shot helper found at construction, if any.
    const std::optional<std::string>& helperPath() const { return helperPath_; }

    /// The one-shot helper: <exe dir>/../libexec/vorlune/smc_helper, then
    /// <exe dir>/../SMCHelper/smc_helper, then the build tree's helper.
    static std::optional<std::string> locateHelper();
    /// Whether the installed path is a root-owned executable file with the setuid bit.
    bool isHelperInstalled() const;
    /// Whether the installed copy is from another version (an upgrade left the old
    /// one), by what its "--version" says: its daemon may not speak this version's
    /// commands, so it is reinstalled before manual control.
    bool isHelperOutdated() const;
    /// Runs `path --all` and decodes its answer; empty readings when it cannot be
    /// started, answers badly, or has not exited 1.5 s after launch (it is killed).
    /// Takes no lock; safe from the sampling thread while the daemon is in use.
    ThermalReadings readAll(const std::string& path) const;
    /// The same readings from `path` kept running in its serving mode, so no process is
    /// started per tick; the one-shot read when it cannot be started. The answer, the
    /// limit and every failure are those of readAll. For the sampling thread only.
    ThermalReadings readResident(const std::string& path);

    /// Starts the installed helper with "--daemon" unless it runs already, and waits
    /// up to 15 s for its first line. Blocks: never call it on the main thread. False
    /// when the daemon could not start or refused; daemonProblem() then says why.
    bool startDaemon();
    /// Writes `command` and a line feed to the daemon; false when none runs or the
    /// write fails. Lines from several threads arrive whole and in call order.
    bool sendCommand(std::string_view command);
    /// Sends "set-fan <key> <rpm>", the speed formatted with "%.0f". Fans are named by
    /// the helper's stable key, never by position, so no other fan can be moved.
    bool setFanSpeed(const std::string& fanKey, double rpm);
    /// Sends "set-duty <key> <percent>", for fans that report no maximum.
    bool setFanDuty(const std::string& fanKey, double percent);
    /// Sends "set-all <key>=<rpm> ..." in key order; an empty map sends nothing, since
    /// no fan was asked for.
    bool setAllFans(const std::map<std::string, double>& rpmByFan);
    /// Sends each drive: the speeds in one set-all, the duties one by one.
    bool driveFans(const std::vector<FanDrive>& drives);
    /// Sends "quit" and closes the daemon's input; a daemon still there after 2 s gets
    /// SIGTERM and 2 s more. Waits no longer than that.
    void stopDaemon();
    /// Whether a daemon has been started and has not exited since. Never waits: while
    /// another thread holds the lock (a start or a command under way) it answers with
    /// the state last known: running once a ready line came, until it stopped.
    bool isDaemonRunning();
    /// Why manual control last failed or ended on its own, for the fan section and the
    /// log: a refusal, a daemon that did not start, or one that died. Empty otherwise;
    /// cleared by the next start.
    std::string daemonProblem();
    /// Notices a daemon that died (killed, crashed): records why, and runs the daemon
    /// once more so it restores the fans from the state file the dead one left. Called
    /// off the main thread (each sampling tick); returns whether it found one. Never
    /// waits for the lock.
    bool checkDaemon();
    /// Copies the helper to the installed path with elevated rights; blocks on the prompt.
    bool installHelper();
    /// Stops the daemon and removes the installed copy with elevated rights; blocks on
    /// the prompt. True when no copy is left.
    bool uninstallHelper();

    const std::string& installedHelperPath() const { return installedHelperPath_; }
    const std::string& elevationProgram() const { return elevationProgram_; }

private:
    void recordProblem(const std::string& problem);

    std::string installedHelperPath_;
    std::string elevationProgram_;
    std::optional<std::string> helperPath_;

    std::unique_ptr<class ResidentHelper> resident_; // the sampling thread's alone
    struct Daemon;
    std::unique_ptr<Daemon> daemon_; // guarded by daemonLock
    std::string daemonProblem_;      // guarded by problemLock
    std::atomic<bool> daemonUp_ = false;
    std::mutex daemonLock;
    std::mutex problemLock;
    mutable std::mutex comparedLock;
    mutable std::string comparedStamp; // the files' identities when last compared
    mutable bool comparedOutdated = false;
};
