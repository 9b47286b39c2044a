#include "HelperInstallation.h"
#include "ThermalMonitor.h"

#include "linux/HelperLocation.h"
#include "linux/QuietRun.h"

#include <unistd.h>

std::vector<std::string> installArguments(const std::string& helperPath,
                                          const std::string& installedPath, unsigned groupId) {
    // -D makes the folder, -T never copies into a folder of that name; ownership is set
    // before the mode, so the set-user-ID bit survives.
    return {installProgram,          "-D", "-T",   "-o", "root",     "-g",
            std::to_string(groupId), "-m", "4750", "--", helperPath, installedPath};
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
