#include "DaemonRunDir.h"

#include "HelperOutput.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* lockName = "fans.lock";
constexpr const char* statesName = "fans.state";
constexpr const char* temporaryName = "fans.state.new";

// A regular file of ours inside the folder, never reached through a symlink.
int openOwnFile(int directory, const char* name, int flags) {
    const int fd = ::openat(directory, name, flags | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0)
        return -1;
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid()) {
        ::close(fd);
        return -1;
    }
    return fd;
}

} // namespace

std::optional<DaemonRunDir> DaemonRunDir::claim(const std::string& path, std::string& error) {
    if (::mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
        error = "cannot create " + path;
        return std::nullopt;
    }
    const int directory = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat status {};
    if (directory < 0 || ::fstat(directory, &status) != 0 || status.st_uid != ::geteuid() ||
        (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        if (directory >= 0)
            ::close(directory);
        error = path + " is not a folder of ours that only we can write";
        return std::nullopt;
    }
    const int lock = openOwnFile(directory, lockName, O_RDWR | O_CREAT);
    if (lock < 0) {
        ::close(directory);
        error = "cannot open the fan lock in " + path;
        return std::nullopt;
    }
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        ::close(directory);
        error = "another fan daemon is running";
        return std::nullopt;
    }
    return DaemonRunDir(directory, lock);
}

DaemonRunDir::DaemonRunDir(DaemonRunDir&& other) noexcept
    : directory_(other.directory_), lock_(other.lock_), states_(other.states_) {
    other.directory_ = other.lock_ = other.states_ = -1;
}

DaemonRunDir::~DaemonRunDir() {
    for (int fd : {states_, lock_, directory_}) {
        if (fd >= 0)
            ::close(fd);
    }
}

std::string DaemonRunDir::leftoverStates() const {
    const int fd = openOwnFile(directory_, statesName, O_RDONLY);
    if (fd < 0)
        return {};
    std::string content;
    std::array<char, 4096> buffer{};
    ssize_t n = 0;
    while ((n = ::read(fd, buffer.data(), buffer.size())) > 0 && content.size() < 1 << 20)
        content.append(buffer.data(), static_cast<std::size_t>(n));
    ::close(fd);
    return content;
}

bool DaemonRunDir::saveStates(const std::string& content) {
    ::unlinkat(directory_, temporaryName, 0);
    const int fd = openOwnFile(directory_, temporaryName, O_WRONLY | O_CREAT | O_EXCL);
    if (fd < 0)
        return false;
    const bool written = writeAll(fd, content) && ::fsync(fd) == 0;
    ::close(fd);
    if (!written || ::renameat(directory_, temporaryName, directory_, statesName) != 0)
        return false;
    ::fsync(directory_);
    if (states_ >= 0)
        ::close(states_);
    states_ = openOwnFile(directory_, statesName, O_WRONLY);
    return states_ >= 0;
}

void DaemonRunDir::clearStates() {
    if (states_ >= 0 && ::ftruncate(states_, 0) == 0)
        ::fsync(states_);
}
