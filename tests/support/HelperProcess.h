#pragma once

#include "TempDir.h"

#include <string>
#include <vector>

/// Path of the smc_helper this build made.
inline std::string helperBinary() {
    return VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";
}

struct HelperResult {
    int exitStatus = -1; ///< exit code, or 128 + signal
    std::string output;
    std::string errors;
};

/// `smc_helper --daemon --sysfs-root <root>`, or any program and argv (argv[0] included),
/// running with pipes on fds 0, 1 and 2. Every wait gives up after 10 s.
class DaemonProcess {
public:
    explicit DaemonProcess(const std::string& sysfsRoot)
        : DaemonProcess(helperBinary(), {"smc_helper", "--daemon", "--sysfs-root", sysfsRoot}) {}
    DaemonProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~DaemonProcess();
    DaemonProcess(const DaemonProcess&) = delete;
    DaemonProcess& operator=(const DaemonProcess&) = delete;

    pid_t pid() const { return pid_; }
    void send(const std::string& bytes);
    void closeInput();
    /// Whether standard output (error) came to contain `text`.
    bool waitForOutput(const std::string& text) { return waitFor(text, output_); }
    bool waitForError(const std::string& text) { return waitFor(text, errors_); }
    /// Waits for the process to end and close both outputs; its exit status, or -1.
    int waitForExit();
    const std::string& output() const { return output_; }
    const std::string& errors() const { return errors_; }

private:
    void readOutputs();
    bool waitFor(const std::string& text, const std::string& in);

    pid_t pid_ = -1;
    int input_ = -1;
    int fds_[2] = {-1, -1}; // standard output, standard error
    std::string output_;
    std::string errors_;
    int exitStatus_ = -1;
};

/// Runs `program` with `arguments` (argv[0] included) to completion, input closed.
inline HelperResult runProgram(const std::string& program,
                               const std::vector<std::string>& arguments) {
    DaemonProcess process(program, arguments);
    process.closeInput();
    const int status = process.waitForExit();
    return {status, process.output(), process.errors()};
}

/// Runs the built helper: `smc_helper <arguments...>`.
inline HelperResult runHelper(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "smc_helper");
    return runProgram(helperBinary(), arguments);
}
