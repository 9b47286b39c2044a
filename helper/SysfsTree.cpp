#include "SysfsTree.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Fails with ELOOP at the first symlink on the way, so a path it opens is the
// directory's real path: what realpath would give, without a readlink per component.
int openWithoutSymlinks(const std::string& path) {
    open_how how{};
    how.flags = directoryFlags;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how));
}

// Nothing lies there, links or not: realpath could not find it either.
bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

// Where a kernel-style link ("../../devices/platform/coretemp.0/hwmon/hwmon3") in the
// symlink-free directory `dir` leads, worked out on the text. Any other form of target
// gives nullopt, and the caller resolves it the slow way.
std::optional<std::string> followKernelLink(std::string_view dir, std::string_view target) {
    std::string result(dir);
    while (target.substr(0, 3) == "../") {
        const auto slash = result.rfind('/');
        if (slash == std::string::npos)
            return std::nullopt;
        result.erase(slash);
        target.remove_prefix(3);
    }
    if (target.empty() || target.front() == '/')
        return std::nullopt;
    for (std::string_view rest = target; !rest.empty();) {
        const auto slash = rest.find('/');
        const std::string_view component = rest.substr(0, slash);
        if (component.empty() || component == "." || component == "..")
            return std::nullopt;
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (slash != std::string_view::npos && rest.empty())
            return std::nullopt; // a trailing slash
    }
    result += '/';
    result.append(target);
    return result;
}

} // namespace

std::optional<SysfsTree> SysfsTree::open(const std::string& root) {
    if (root.empty())
        return SysfsTree(std::string());
    char buffer[PATH_MAX];
    if (::realpath(root.c_str(), buffer) == nullptr)
        return std::nullopt;
    std::string resolved = buffer;
    if (resolved == "/")
        resolved.clear();
    return SysfsTree(std::move(resolved));
}

std::optional<SysfsDir> SysfsTree::openDir(std::string_view absolute) const {
    std::string path = root_;
    path.append(absolute);
    const int fd = openWithoutSymlinks(path);
    if (fd >= 0)
        return SysfsDir(std::move(path), fd);
    if (isMissing(errno))
        return std::nullopt;
    return openByRealPath(path, false);
}

std::optional<SysfsDir> SysfsTree::openDeviceDir(const SysfsDir& parent,
                                                 std::string_view entry) const {
    const std::string name(entry);
    char target[PATH_MAX];
    const ssize_t length = ::readlinkat(parent.fd(), name.c_str(), target, sizeof target);
    if (length < 0 && errno == ENOENT)
        return std::nullopt;
    if (length < 0 && errno == EINVAL) {
        // A directory of its own, not a link: it lies where its parent does.
        std::string path = parent.pathOf(name);
        if (!isDevicePath(path))
            return std::nullopt;
        const int fd = ::openat(parent.fd(), name.c_str(), directoryFlags | O_NOFOLLOW);
        if (fd < 0)
            return std::nullopt;
        return SysfsDir(std::move(path), fd);
    }
    if (length > 0 && static_cast<std::size_t>(length) < sizeof target) {
        auto path = followKernelLink(parent.path(), {target, static_cast<std::size_t>(length)});
        if (path && isDevicePath(*path)) {
            const int fd = openWithoutSymlinks(*path);
            if (fd >= 0)
                return SysfsDir(std::move(*path), fd);
            if (isMissing(errno))
                return std::nullopt;
        }
    }
    // Links of another form, links through links, or a kernel without openat2.
    return openByRealPath(parent.pathOf(name), true);
}

std::optional<SysfsDir> SysfsTree::openByRealPath(const std::string& path, bool deviceOnly) const {
    char buffer[PATH_MAX];
    if (::realpath(path.c_str(), buffer) == nullptr)
        return std::nullopt;
    std::string resolved = buffer;
    if (deviceOnly && !isDevicePath(resolved))
        return std::nullopt;
    const int fd = ::open(resolved.c_str(), directoryFlags | O_NOFOLLOW);
    if (fd < 0)
        return std::nullopt;
    return SysfsDir(std::move(resolved), fd);
}

bool SysfsTree::isDevicePath(std::string_view path) const {
    return path.substr(0, devicesPrefix_.size()) == devicesPrefix_;
}

std::string_view SysfsTree::withoutRoot(std::string_view resolved) const {
    if (resolved.substr(0, root_.size()) == root_)
        resolved.remove_prefix(root_.size());
    return resolved;
}
