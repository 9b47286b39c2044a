#include "HelperInstallation.h"
#include "ThermalMonitor.h"

#include "linux/AtomicFile.h"
#include "linux/QuietRun.h"

#include <filesystem>

std::string installScriptText(std::string_view helperPath, std::string_view installedPath) {
    const std::string installed(installedPath);
    const std::string directory = std::filesystem::path(installed).parent_path().string();
    const std::string quoted = "\"" + installed + "\"";
    return "#!/bin/sh\nmkdir -p " + directory + " && cp \"" + std::string(helperPath) + "\" " +
           quoted + " && chown root:root " + quoted + " && chmod 4755 " + quoted + "\n";
}

bool ThermalMonitor::installHelper() {
    if (!helperPath_)
        return false;
    const std::string script = installScriptText(*helperPath_, installedHelperPath_);
    if (!writeFileAtomically(installScriptPath, script))
        return false;
    std::error_code ignored;
    std::filesystem::permissions(installScriptPath, std::filesystem::perms(0755), ignored);

    // pkexec answers 126 for a dismissed prompt and 127 for a refusal: both are failures.
    const RunOutcome outcome = runQuietly(elevationProgram_, {"/bin/sh", installScriptPath});
    if (outcome == RunOutcome::notStarted)
        return false;
    std::filesystem::remove(installScriptPath, ignored);
    // Only a root-owned set-user-ID copy counts, whatever the script reported.
    return outcome == RunOutcome::succeeded && isHelperInstalled();
}
