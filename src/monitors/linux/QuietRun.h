#pragma once

#include <string>
#include <vector>

/// How a program run to its end went.
enum class RunOutcome { notStarted, succeeded, failed };

/// Runs `program` (an absolute path) with `arguments`, standard input inherited and
/// standard output and error discarded, and waits without limit for it to end.
/// `succeeded` means it exited with status 0; a non-zero status or a signal is `failed`.
RunOutcome runQuietly(const std::string& program, const std::vector<std::string>& arguments);
