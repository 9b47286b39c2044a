#include "QuietRun.h"

#include "ChildProcess.h"

#include <sys/wait.h>

RunOutcome runQuietly(const std::string& program, const std::vector<std::string>& arguments) {
    const auto child = ChildProcess::start(
        program, arguments,
        {ChildStream::inherited, ChildStream::nullDevice, ChildStream::nullDevice});
    if (!child)
        return RunOutcome::notStarted;
    child->waitForExit();
    const std::optional<int> status = child->waitStatus();
    const bool exitedCleanly = status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0;
    return exitedCleanly ? RunOutcome::succeeded : RunOutcome::failed;
}
