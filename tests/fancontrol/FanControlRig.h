#pragma once

#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "thermal/ScratchDir.h"

#include <QStringList>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class QWidget;

/// The smc_helper of this build tree.
inline const std::string builtHelper = VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";

/// A real monitor that never samples, whose thermal monitor installs to and starts its
/// daemon from a scratch directory, with a real settings file there too.
struct FanControlRig {
    FanControlRig();
    /// Lets queued fan-control work finish first: it uses the thermal monitor.
    ~FanControlRig();

    /// A stand-in at the installed path: root-owned, mode 4755, this shell body.
    void installStandIn(const std::string& body, mode_t mode = 04755) const;
    /// A stand-in daemon that says it is ready and appends every line it reads to
    /// `commands`, each after the time it arrived (ns since the epoch); it writes the
    /// time of its ready line to `readyAt`.
    void installRecorder() const;
    /// The lines the recorder got, without their times.
    std::vector<std::string> recordedLines() const;
    /// Nanoseconds between the recorder's ready line and the first line `line`; -1 if none.
    long long nanosecondsFromReadyTo(const std::string& line) const;

    /// Publishes a reading with these fans; fan speed and maximum come from the first.
    void publishFans(const std::vector<FanInfo>& fans);

    ThermalMonitor& thermal() { return monitor.thermalMonitor(); }

    ScratchDir dir;
    const std::filesystem::path installed = dir.path() / "bin/vorlune_smc_helper";
    const std::filesystem::path elevation = dir.path() / "elevate";
    const std::filesystem::path commands = dir.path() / "commands";
    const std::filesystem::path readyAt = dir.path() / "readyAt";
    AppSettings settings;
    SystemMonitor monitor;
};

/// Runs what the views queued after a change notice.
void settle();
/// Settles until `condition` holds or 20 s have passed; returns its last value.
bool settleUntil(const std::function<bool()>& condition);

/// The texts of every label and button below `root` that shows when `root` does.
QStringList shownTexts(const QWidget* root);

/// Holds the lock that keeps tests of several processes from using the fixed install
/// script path at once.
class InstallScriptLock {
public:
    InstallScriptLock();
    ~InstallScriptLock();
    InstallScriptLock(const InstallScriptLock&) = delete;
    InstallScriptLock& operator=(const InstallScriptLock&) = delete;

private:
    int fd;
};

/// Whether this process may make root-owned set-user-ID files.
bool runsAsRoot();
