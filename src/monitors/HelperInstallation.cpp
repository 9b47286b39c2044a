#include "HelperInstallation.h"
#include "ThermalMonitor.h"

#include "linux/ChildProcess.h"
#include "linux/HelperLocation.h"
#include "linux/QuietRun.h"

#include <filesystem>
#include <optional>
#include <unistd.h>

namespace {

const std::string helperVersionLine = "smc_helper " VORLUNE_HELPER_VERSION "\n";

} // namespace

std::vector<std::string> installArguments(const std::string& helperPath,
                                          const std::string& installedPath, unsigned groupId) {
    // -D makes the folder, -T never copies into a folder of that name; ownership is set
    // before the mode, so the set-user-ID bit survives.
    return {installProgram,          "-D", "-T",   "-o", "root",     "-g",
            std::to_string(groupId), "-m", "4750", "--", helperPath, installedPath};
}
bool ThermalMonitor::uninstallHelper() {
    stopDaemon();
    std::error_code error;
    const auto installed = [&] {
        return std::filesystem::symlink_status(installedHelperPath_, error).type() !=
               std::filesystem::file_type::not_found;
    };
    if (!installed())
        return true;
    runQuietly(elevationProgram_, {removeProgram, "-f", "--", installedHelperPath_});
    return !installed();
}

bool ThermalMonitor::isHelperOutdated() const {
    const std::string stamp = fileIdentity(installedHelperPath_);
    if (stamp.empty())
        return false;
    // Asked once per installed file, not on every refresh.
    std::lock_guard lock(comparedLock);
    if (stamp != comparedStamp) {
        const std::optional<std::string> answer = ChildProcess::runForOutput(
            installedHelperPath_, {"--version"}, std::chrono::milliseconds(1500));
        // A copy that names another version is outdated; one that names none is from
        // before versions were named. Only a copy that cannot run at all is not judged.
        comparedOutdated = answer.has_value() && *answer != helperVersionLine;
        comparedStamp = stamp;
    }
    return comparedOutdated;
}

bool ThermalMonitor::installHelper() {
    // A copy anyone else could have replaced must never become set-user-ID root.
    if (!helperPath_ || !isTrustedHelperSource(*helperPath_))
        return false;
    // pkexec answers 126 for a dismissed prompt and 127 for a refusal: both are failures.
    const RunOutcome outcome = runQuietly(
        elevationProgram_, installArguments(*helperPath_, installedHelperPath_, ::getgid()));
    // Only a root-owned set-user-ID copy counts, whatever install reported.
    return outcome == RunOutcome::succeeded && isHelperInstalled();
}
