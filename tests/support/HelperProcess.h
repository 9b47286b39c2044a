#pragma once

#include "TempDir.h"

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

/// Path of the smc_helper this build made.
std::string helperBinary();

struct HelperResult {
    int exitStatus = -1; ///< exit code, or 128 + signal
    std::string output;
    std::string errors;
};

/// Runs `program` with `arguments` (argv[0] included) to completion.
HelperResult runProgram(const std::string& program, const std::vector<std::string>& arguments);

/// Runs the built helper: `smc_helper <arguments...>`.
HelperResult runHelper(const std::vector<std::string>& arguments);

/// A running `smc_helper --daemon --sysfs-root <root>` with pipes on all three fds.
class DaemonProcess {
public:
    explicit DaemonProcess(const std::string& sysfsRoot);
    /// Any program and argv (argv[0] included), e.g. the helper started through setpriv.
    DaemonProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~DaemonProcess();
    DaemonProcess(const DaemonProcess&) = delete;
    DaemonProcess& operator=(const DaemonProcess&) = delete;

    pid_t pid() const { return pid_; }
    /// Reads standard output until its first line; returns that line ("" on timeout/EOF).
    std::string readyLine(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    void send(const std::string& bytes);
    void closeInput();
    /// Waits for a line on standard error that contains `text`.
    bool waitForError(const std::string& text,
                      std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /// Waits for the daemon to end; its exit status, or -1 when it did not end in time.
    int waitForExit(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    bool running();
    const std::string& errors() const { return errors_; }
    /// What the daemon wrote to standard output after its ready line, read at exit.
    const std::string& lateOutput() const { return lateOutput_; }

private:
    void drainErrors(int timeoutMs);

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errorOutput_ = -1;
    std::string errors_;
    std::string lateOutput_;
    int exitStatus_ = -1;
};
