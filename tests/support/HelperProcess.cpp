#include "HelperProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe makePipe() {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2 failed");
    return {fds[0], fds[1]};
}

std::vector<char*> argvOf(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    return argv;
}

pid_t spawn(const std::string& program, const std::vector<std::string>& arguments, Pipe in,
            Pipe out, Pipe err) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in.read, 0);
    posix_spawn_file_actions_adddup2(&actions, out.write, 1);
    posix_spawn_file_actions_adddup2(&actions, err.write, 2);
    std::vector<char*> argv = argvOf(arguments);
    pid_t pid = -1;
    const int result = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(in.read);
    ::close(out.write);
    ::close(err.write);
    if (result != 0)
        throw std::runtime_error("posix_spawn failed: " + program);
    return pid;
}

int decodeStatus(int status) {
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        return 128 + WTERMSIG(status);
    return -1;
}

// Reads what is available on `fd` within `timeoutMs`; false at end of file.
bool readSome(int fd, std::string& into, int timeoutMs) {
    pollfd waitFor{fd, POLLIN, 0};
    if (::poll(&waitFor, 1, timeoutMs) <= 0)
        return true;
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(fd, buffer.data(), buffer.size());
    if (count <= 0)
        return false;
    into.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

} // namespace

std::string helperBinary() {
    return VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";
}

HelperResult runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    Pipe in = makePipe();
    Pipe out = makePipe();
    Pipe err = makePipe();
    const pid_t pid = spawn(program, arguments, in, out, err);
    ::close(in.write);
    HelperResult result;
    bool outOpen = true;
    bool errOpen = true;
    while (outOpen || errOpen) {
        if (outOpen)
            outOpen = readSome(out.read, result.output, 10);
        if (errOpen)
            errOpen = readSome(err.read, result.errors, 10);
    }
    ::close(out.read);
    ::close(err.read);
    int status = 0;
    ::waitpid(pid, &status, 0);
    result.exitStatus = decodeStatus(status);
    return result;
}

HelperResult runHelper(const std::vector<std::string>& arguments) {
    std::vector<std::string> argv{"smc_helper"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runProgram(helperBinary(), argv);
}

DaemonProcess::DaemonProcess(const std::string& sysfsRoot)
    : DaemonProcess(helperBinary(), {"smc_helper", "--daemon", "--sysfs-root", sysfsRoot}) {}

DaemonProcess::DaemonProcess(const std::string& program,
                             const std::vector<std::string>& arguments) {
    Pipe in = makePipe();
    Pipe out = makePipe();
    Pipe err = makePipe();
    pid_ = spawn(program, arguments, in, out, err);
    input_ = in.write;
    output_ = out.read;
    errorOutput_ = err.read;
}

DaemonProcess::~DaemonProcess() {
    if (exitStatus_ < 0 && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    for (int fd : {input_, output_, errorOutput_}) {
        if (fd >= 0)
            ::close(fd);
    }
}

std::string DaemonProcess::readyLine(std::chrono::milliseconds timeout) {
    std::string text;
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (text.find('\n') == std::string::npos && std::chrono::steady_clock::now() < deadline) {
        if (!readSome(output_, text, 50))
            break;
    }
    const auto newline = text.find('\n');
    return newline == std::string::npos ? std::string() : text.substr(0, newline);
}

void DaemonProcess::send(const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = ::write(input_, bytes.data() + done, bytes.size() - done);
        if (written <= 0)
            throw std::runtime_error("writing to the daemon failed");
        done += static_cast<std::size_t>(written);
    }
}

void DaemonProcess::closeInput() {
    ::close(input_);
    input_ = -1;
}

void DaemonProcess::drainErrors(int timeoutMs) {
    readSome(errorOutput_, errors_, timeoutMs);
}

bool DaemonProcess::waitForError(const std::string& text, std::chrono::milliseconds timeout) {
    return eventually(
        [&] {
            drainErrors(20);
            return errors_.find(text) != std::string::npos;
        },
        timeout);
}

bool DaemonProcess::running() {
    int status = 0;
    if (exitStatus_ < 0 && ::waitpid(pid_, &status, WNOHANG) == pid_)
        exitStatus_ = decodeStatus(status);
    return exitStatus_ < 0;
}

int DaemonProcess::waitForExit(std::chrono::milliseconds timeout) {
    eventually([&] { return !running(); }, timeout);
    if (exitStatus_ < 0)
        return exitStatus_;
    // The daemon is gone, so both pipes end; read them to their end.
    for (int i = 0; i < 100 && readSome(output_, lateOutput_, 100); ++i) {
    }
    for (int i = 0; i < 100 && readSome(errorOutput_, errors_, 100); ++i) {
    }
    return exitStatus_;
}
