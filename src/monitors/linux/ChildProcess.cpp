#include "ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace {

struct SpawnFileActions {
    posix_spawn_file_actions_t actions;
    SpawnFileActions() { posix_spawn_file_actions_init(&actions); }
    ~SpawnFileActions() { posix_spawn_file_actions_destroy(&actions); }
};

struct SpawnAttributes {
    posix_spawnattr_t attributes;
    SpawnAttributes() { posix_spawnattr_init(&attributes); }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes); }
};

// Makes a close-on-exec pipe; returns {read end, write end}.
bool makePipe(UniqueFd& readEnd, UniqueFd& writeEnd) {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return false;
    readEnd.reset(fds[0]);
    writeEnd.reset(fds[1]);
    return true;
}

// Connects `target` in the child to `childEnd` (a pipe) or to /dev/null.
bool connectStream(posix_spawn_file_actions_t& actions, ChildStream kind, int target,
                   const UniqueFd& childEnd) {
    switch (kind) {
    case ChildStream::inherited:
        return true;
    case ChildStream::nullDevice:
        return posix_spawn_file_actions_addopen(&actions, target, "/dev/null",
                                                target == STDIN_FILENO ? O_RDONLY : O_WRONLY,
                                                0) == 0;
    case ChildStream::pipe:
        return posix_spawn_file_actions_adddup2(&actions, childEnd.get(), target) == 0;
    }
    return false;
}

// Reads what the pipe holds without waiting for more: the writer has exited, but
// something it started may still hold the pipe open.
std::string drainPipe(int fd) {
    std::string bytes;
    const int flags = fcntl(fd, F_GETFL);
    if (flags < 0 || fcntl(fd, F_SETFL, flags | O_NONBLOCK) != 0)
        return bytes;
    char chunk[16384];
    for (;;) {
        const ssize_t n = ::read(fd, chunk, sizeof chunk);
        if (n > 0)
            bytes.append(chunk, static_cast<size_t>(n));
        else if (n < 0 && errno == EINTR)
            continue;
        else
            break;
    }
    return bytes;
}

} // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(const std::string& program,
                                                  const std::vector<std::string>& arguments,
                                                  ChildStreams streams) {
    UniqueFd inputReader, inputWriter, outputReader, outputWriter;
    if (streams.input == ChildStream::pipe && !makePipe(inputReader, inputWriter))
        return nullptr;
    if (streams.output == ChildStream::pipe && !makePipe(outputReader, outputWriter))
        return nullptr;
    // Standard error is never piped: nobody reads it, and a full pipe would stall the child.
    if (streams.error == ChildStream::pipe)
        streams.error = ChildStream::nullDevice;

    SpawnFileActions files;
    if (!connectStream(files.actions, streams.input, STDIN_FILENO, inputReader) ||
        !connectStream(files.actions, streams.output, STDOUT_FILENO, outputWriter) ||
        !connectStream(files.actions, streams.error, STDERR_FILENO, UniqueFd()))
        return nullptr;

    // A group of its own lets kill() reach whatever a hung child started; the
    // signal settings undo the parent's SIGPIPE handling and any blocked signals.
    SpawnAttributes attributes;
    sigset_t noSignals, pipeSignal;
    sigemptyset(&noSignals);
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    posix_spawnattr_setflags(&attributes.attributes, POSIX_SPAWN_SETPGROUP |
                                                         POSIX_SPAWN_SETSIGMASK |
                                                         POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setpgroup(&attributes.attributes, 0);
    posix_spawnattr_setsigmask(&attributes.attributes, &noSignals);
    posix_spawnattr_setsigdefault(&attributes.attributes, &pipeSignal);

    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    pid_t pid = 0;
    if (posix_spawn(&pid, program.c_str(), &files.actions, &attributes.attributes, argv.data(),
                    environ) != 0)
        return nullptr;
    return std::unique_ptr<ChildProcess>(
        new ChildProcess(pid, std::move(inputWriter), std::move(outputReader)));
}

std::optional<std::string> ChildProcess::runForOutput(const std::string& program,
                                                      const std::vector<std::string>& arguments,
                                                      std::chrono::milliseconds limit) {
    auto child = start(program, arguments,
                       {ChildStream::inherited, ChildStream::pipe, ChildStream::nullDevice});
    if (!child)
        return std::nullopt;
    if (!child->waitForExit(limit)) {
        child->kill();
        return std::nullopt;
    }
    return drainPipe(child->outputReader().get());
}

PipeChunk ChildProcess::readChunk(int fd, std::chrono::milliseconds limit) {
    pollfd watch{fd, POLLIN, 0};
    const int ready = poll(&watch, 1, static_cast<int>(limit.count()));
    if (ready == 0 || (ready < 0 && errno == EINTR))
        return {PipeChunk::Kind::timedOut, {}};
    char buffer[4096];
    ssize_t n;
    do {
        n = ready > 0 ? ::read(fd, buffer, sizeof buffer) : -1;
    } while (n < 0 && errno == EINTR);
    if (n <= 0)
        return {PipeChunk::Kind::endOfFile, {}};
    return {PipeChunk::Kind::data, std::string(buffer, static_cast<size_t>(n))};
}

bool ChildProcess::writeAll(int fd, std::string_view bytes) {
    // Block SIGPIPE for this thread while writing and swallow the one a broken pipe
    // raises, so the write fails with EPIPE even where SIGPIPE is not ignored.
    sigset_t pipeSignal, previousMask, pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    sigpending(&pending);
    const bool alreadyPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &previousMask);

    bool written = true;
    bool brokenPipe = false;
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n >= 0) {
            bytes.remove_prefix(static_cast<size_t>(n));
            continue;
        }
        if (errno == EINTR)
            continue;
        brokenPipe = errno == EPIPE;
        written = false;
        break;
    }

    if (brokenPipe && !alreadyPending) {
        const timespec noWait{};
        while (sigtimedwait(&pipeSignal, nullptr, &noWait) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &previousMask, nullptr);
    return written;
}

ChildProcess::ChildProcess(pid_t pid, UniqueFd inputWriter, UniqueFd outputReader)
    : pid_(pid), inputWriter_(std::move(inputWriter)), outputReader_(std::move(outputReader)) {}

ChildProcess::~ChildProcess() {
    inputWriter_.reset();
    outputReader_.reset();
    if (!waitStatus_)
        reap(WNOHANG);
}

bool ChildProcess::reap(int options) {
    if (waitStatus_)
        return true;
    int status = 0;
    pid_t result;
    do {
        result = waitpid(pid_, &status, options);
    } while (result < 0 && errno == EINTR);
    if (result == pid_) {
        waitStatus_ = status;
        return true;
    }
    if (result < 0) {
        // Reaped elsewhere (ECHILD): it is gone either way.
        waitStatus_ = -1;
        return true;
    }
    return false;
}

bool ChildProcess::isRunning() {
    return !reap(WNOHANG);
}

bool ChildProcess::waitForExit(std::chrono::milliseconds limit) {
    if (reap(WNOHANG))
        return true;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    // glibc 2.36 declares pidfd_open without C linkage, so call it directly.
    UniqueFd exitNotice(static_cast<int>(syscall(SYS_pidfd_open, pid_, 0)));
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return reap(WNOHANG);
        if (exitNotice) {
            pollfd watch{exitNotice.get(), POLLIN, 0};
            const int ready = poll(&watch, 1, static_cast<int>(left.count()));
            if (ready > 0)
                return reap(0);
            if (ready < 0 && errno != EINTR)
                exitNotice.reset();
        } else {
            // Kernels without pidfd: look again every millisecond.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            if (reap(WNOHANG))
                return true;
        }
    }
}

void ChildProcess::waitForExit() {
    reap(0);
}

void ChildProcess::kill() {
    if (waitStatus_)
        return;
    ::kill(-pid_, SIGKILL);
    ::kill(pid_, SIGKILL);
    reap(0);
}
