#include "HelperProcess.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

DaemonProcess::DaemonProcess(const std::string& program,
                             const std::vector<std::string>& arguments) {
    // The child's end of each pipe: the read end for fd 0, the write ends for 1 and 2.
    int pipes[3][2];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int fd = 0; fd < 3; ++fd) {
        if (::pipe2(pipes[fd], O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2 failed");
        posix_spawn_file_actions_adddup2(&actions, pipes[fd][fd == 0 ? 0 : 1], fd);
    }
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const int result = posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    for (int fd = 0; fd < 3; ++fd)
        ::close(pipes[fd][fd == 0 ? 0 : 1]);
    input_ = pipes[0][1];
    fds_[0] = pipes[1][0];
    fds_[1] = pipes[2][0];
    if (result != 0)
        throw std::runtime_error("posix_spawn failed: " + program);
}

DaemonProcess::~DaemonProcess() {
    if (exitStatus_ < 0 && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    for (int fd : {input_, fds_[0], fds_[1]})
        ::close(fd); // -1 where already closed
}

// Appends what either output has within 20 ms; closes an output at its end.
void DaemonProcess::readOutputs() {
    pollfd waitFor[2] = {{fds_[0], POLLIN, 0}, {fds_[1], POLLIN, 0}};
    if (::poll(waitFor, 2, 20) <= 0)
        return;
    std::string* into[2] = {&output_, &errors_};
    char buffer[4096];
    for (int i = 0; i < 2; ++i) {
        if (waitFor[i].revents == 0)
            continue;
        const ssize_t count = ::read(fds_[i], buffer, sizeof buffer);
        if (count > 0)
            into[i]->append(buffer, static_cast<std::size_t>(count));
        else
            ::close(std::exchange(fds_[i], -1));
    }
}

void DaemonProcess::send(const std::string& bytes) {
    if (::write(input_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("writing to the daemon failed");
}

void DaemonProcess::closeInput() {
    ::close(input_);
    input_ = -1;
}

bool DaemonProcess::waitFor(const std::string& text, const std::string& in) {
    return eventually([&] {
        readOutputs();
        return in.find(text) != std::string::npos;
    });
}

int DaemonProcess::waitForExit() {
    eventually([&] {
        readOutputs();
        int status = 0;
        if (exitStatus_ < 0 && ::waitpid(pid_, &status, WNOHANG) == pid_)
            exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return fds_[0] < 0 && fds_[1] < 0 && exitStatus_ >= 0;
    });
    return exitStatus_;
}
