#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The sysfs the helper reads: the real one, or a fake tree under a root directory
/// (tests). Every directory it hands out is a resolved path inside <root>/sys/devices/.
class SysfsTree {
public:
    /// `root` empty means the real /sys. Returns nullopt when the root does not resolve.
    static std::optional<SysfsTree> open(const std::string& root);

    /// `absolute` (e.g. "/sys/class/hwmon") inside this tree.
    std::string path(std::string_view absolute) const;

    /// Resolves `path` with realpath and accepts it only when it lies under
    /// <root>/sys/devices/, so a symlink can never lead the helper elsewhere.
    std::optional<std::string> resolveDeviceDir(const std::string& path) const;

    /// `resolved` without the root prefix, as it would read on a real machine.
    std::string_view withoutRoot(std::string_view resolved) const;

    /// Names in a directory, sorted, without "." and ".."; empty when unreadable.
    static std::vector<std::string> list(const std::string& dir);

private:
    explicit SysfsTree(std::string root) : root_(std::move(root)) {}
    std::string root_; // resolved, no trailing slash; "" for the real /sys
};
