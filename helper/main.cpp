// smc_helper: reads the machine's temperatures and fans from hwmon ("--all"), or, as
// a long-lived setuid-root child ("--daemon"), sets fan speeds on command.

#include "FanDaemon.h"
#include "FanGuard.h"
#include "Hardening.h"
#include "HelperOptions.h"
#include "HelperOutput.h"
#include "ReadingsJson.h"
#include "SensorCollector.h"
#include "SysfsTree.h"

#include <csignal>
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

// Everything privileged is opened first; the daemon then runs as the calling user.
int daemonMode(const SysfsTree& tree) {
    const SensorReadings readings =
        collectSensors(tree, {.readCriticalTemperatures = true, .recordPaths = true});
    FanGuard guard(readings.fans);
    std::vector<WatchedSensor> cpuSensors = openCpuSensors(readings);
    std::string error;
    if (!dropPrivileges(error)) {
        reportError(error);
        return 1;
    }
    FanDaemon daemon(std::move(guard), std::move(cpuSensors));
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
    if (options.sysfsRoot && runsWithRaisedPrivileges()) {
        reportError("--sysfs-root is refused when running with raised privileges");
        return 2;
    }
    const auto tree = SysfsTree::open(options.sysfsRoot.value_or(""));
    if (!tree || ::chdir("/") != 0) {
        reportError("cannot open the sysfs root");
        return 2;
    }
    return options.mode == HelperMode::oneShot ? oneShotMode(*tree) : daemonMode(*tree);
}
