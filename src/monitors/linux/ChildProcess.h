#pragma once

#include "UniqueFd.h"

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How one standard stream of a child is connected.
enum class ChildStream { inherited, nullDevice, pipe };

/// The connections of a child's standard input, output and error.
struct ChildStreams {
    ChildStream input = ChildStream::inherited;
    ChildStream output = ChildStream::inherited;
    ChildStream error = ChildStream::inherited;
};

/// What one read from a pipe gave; a read error counts as the end of the data.
struct PipeChunk {
    enum class Kind { data, endOfFile, timedOut } kind = Kind::timedOut;
    std::string bytes;
};

/// A child process started with posix_spawn. Unlike QProcess it is bound to no
/// thread: any thread may use it, as long as calls on one object do not overlap.
/// Every pipe end is close-on-exec, so no other child inherits it. The child runs
/// in a process group of its own with SIGPIPE at its default action.
class ChildProcess {
public:
    /// Starts `program` (an absolute path) with `arguments`; nullptr when it cannot be started.
    static std::unique_ptr<ChildProcess> start(const std::string& program,
                                               const std::vector<std::string>& arguments,
                                               ChildStreams streams);

    /// Runs `program` with standard input inherited and standard error discarded,
    /// waits for it to exit, then returns what it wrote to standard output. Gives
    /// nullopt when it cannot be started, or when it has not exited within `limit`
    /// (it is then killed). The exit status is not looked at.
    static std::optional<std::string> runForOutput(const std::string& program,
                                                   const std::vector<std::string>& arguments,
                                                   std::chrono::milliseconds limit);

    /// Waits up to `limit` for `fd` to offer data, then reads what is there.
    static PipeChunk readChunk(int fd, std::chrono::milliseconds limit);

    /// Writes all of `bytes` to `fd`. False on any error, including a reader that has
    /// gone; that case never raises SIGPIPE, whatever the process's disposition.
    static bool writeAll(int fd, std::string_view bytes);

    /// Closes the pipe ends and reaps the child if it has exited. A running child is
    /// left running.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning();
    /// True when the child has exited within `limit`.
    bool waitForExit(std::chrono::milliseconds limit);
    void waitForExit();
    /// Kills the child's whole process group with SIGKILL and reaps the child.
    void kill();
    /// The wait status once the child has been reaped.
    std::optional<int> waitStatus() const { return waitStatus_; }

    /// The writing end of the child's standard input (when it is a pipe).
    UniqueFd& inputWriter() { return inputWriter_; }
    /// The reading end of the child's standard output (when it is a pipe).
    UniqueFd& outputReader() { return outputReader_; }

private:
    ChildProcess(pid_t pid, UniqueFd inputWriter, UniqueFd outputReader);
    bool reap(int options);

    pid_t pid_;
    std::optional<int> waitStatus_;
    UniqueFd inputWriter_;
    UniqueFd outputReader_;
};
