// smc_helper: reads the machine's temperatures and fans from hwmon, once ("--all") or
// once per request line for as long as its input is open ("--serve"), or, as a
// long-lived setuid-root child ("--daemon"), sets fan speeds on command.

#include "DaemonRunDir.h"
#include "FanDaemon.h"
#include "FanGuard.h"
#include "FanStateFile.h"
#include "Hardening.h"
#include "HelperOptions.h"
#include "HelperOutput.h"
#include "ReadingsCache.h"
#include "ReadingsJson.h"
#include "SensorCollector.h"
#include "SysfsTree.h"

#include <cerrno>
#include <csignal>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int oneShotMode(const SysfsTree& tree) {
    std::string error;
    if (!dropPrivileges(error)) {
        reportError(error);
        return 1;
    }
    const SensorReadings readings = collectSensors(tree, {.includeNvml = true});
    return writeAll(STDOUT_FILENO, formatReadingsJson(readings)) ? 0 : 1;
}

// The same answer as "--all", once per line read, so the application need not start a
// process each tick. Unprivileged like the one-shot mode; ends when its input does.
int serveMode(const SysfsTree& tree) {
    std::string error;
    if (!dropPrivileges(error)) {
        reportError(error);
        return 1;
    }
    ReadingsCache cache(tree);
    char buffer[256];
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return 0;
        // Each line feed is one request; what the lines say is not looked at.
        for (ssize_t i = 0; i < count; ++i) {
            if (buffer[i] == '\n' && !writeAll(STDOUT_FILENO, formatReadingsJson(cache.read())))
                return 1;
        }
    }
}

// A refusal goes where the application waits for the ready line, and to the log. The
// refused daemon, already unprivileged, then waits for its caller to hang up, so the
// caller can see the reason and the process it came from.
int refuseDaemon(const std::string& reason) {
    writeAll(STDOUT_FILENO, "refused: " + reason + "\n");
    reportError("refused: " + reason);
    char ignored[256];
    while (::read(STDIN_FILENO, ignored, sizeof ignored) > 0) {
    }
    return 3;
}

// Everything privileged is opened first; the daemon then runs as the calling user. No
// fan is written before the lock is held and the originals are safely on disk.
int daemonMode(const SysfsTree& tree, const std::string& runPath) {
    std::string refusal;
    std::optional<DaemonRunDir> runDir = DaemonRunDir::claim(runPath, refusal);
    std::optional<FanGuard> guard;
    std::vector<WatchedSensor> watched;
    if (runDir) {
        const SensorReadings readings =
            collectSensors(tree, {.readCriticalTemperatures = true, .recordPaths = true});
        guard.emplace(readings.fans);
        // A daemon that was killed left its fans manual; their true originals are on file.
        const std::vector<SavedFanState> leftover = parseFanStates(runDir->leftoverStates());
        if (!leftover.empty()) {
            reportError("restoring the fans a previous daemon left behind");
            const std::vector<std::string> failed = guard->restoreLeftover(leftover);
            for (const std::string& key : failed)
                reportError(key + " could not be restored; running it at full speed");
            // The file stays while a fan did not come back, so no later daemon takes
            // its stuck state for an original.
            if (!failed.empty())
                refusal = "a fan left manual by a previous daemon could not be restored";
            else
                runDir->saveStates("");
        }
        watched = openWatchedSensors(readings);
        if (refusal.empty() && watched.empty())
            refusal = "no readable temperature to guard manual fan control with";
        if (refusal.empty() && !runDir->saveStates(formatFanStates(guard->takeOriginals())))
            refusal = "cannot save the fans' original state";
    }
    std::string error;
    if (!dropPrivileges(error)) {
        reportError(error);
        return 1;
    }
    if (!refusal.empty())
        return refuseDaemon(refusal);
    FanDaemon daemon(std::move(*guard), std::move(watched), std::move(*runDir));
    return daemon.run(STDIN_FILENO, STDOUT_FILENO);
}

} // namespace

int main(int argc, char** argv) {
    if (!sanitizeFileDescriptors())
        return 2;
    // An empty argv lets a caller slip in arguments where argv[1] is expected.
    if (argc < 1 || argv[0] == nullptr || argv[0][0] == '\0') {
        reportError("refusing to start without a program name");
        return 2;
    }
    resetProcessEnvironment();
    std::signal(SIGPIPE, SIG_IGN);

    const ParsedOptions parsed = parseHelperOptions({argv + 1, argv + argc});
    if (!parsed.options) {
        reportError(parsed.error);
        return 2;
    }
    const HelperOptions& options = *parsed.options;
    if (options.mode == HelperMode::version) {
        std::string error;
        if (!dropPrivileges(error))
            return 1;
        return writeAll(STDOUT_FILENO, "smc_helper " VORLUNE_HELPER_VERSION "\n") ? 0 : 1;
    }
    if (options.sysfsRoot && runsWithRaisedPrivileges()) {
        reportError("--sysfs-root is refused when running with raised privileges");
        return 2;
    }
    const auto tree = SysfsTree::open(options.sysfsRoot.value_or(""));
    if (!tree || ::chdir("/") != 0) {
        reportError("cannot open the sysfs root");
        return 2;
    }
    if (options.mode == HelperMode::oneShot)
        return oneShotMode(*tree);
    if (options.mode == HelperMode::serve)
        return serveMode(*tree);
    if (!options.sysfsRoot)
        return daemonMode(*tree, "/run/vorlune");
    // A test tree keeps its own run folder, so its lock and state never meet the real one.
    ::mkdir((*options.sysfsRoot + "/run").c_str(), 0755);
    return daemonMode(*tree, *options.sysfsRoot + "/run/vorlune");
}
