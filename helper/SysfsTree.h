#pragma once

#include "SysfsDir.h"

#include <optional>
#include <string>
#include <string_view>

/// The sysfs the helper reads: the real one, or a fake tree under a root directory
/// (tests). Every device directory it opens lies under <root>/sys/devices/.
class SysfsTree {
public:
    /// `root` empty means the real /sys. Returns nullopt when the root does not resolve.
    static std::optional<SysfsTree> open(const std::string& root);

    /// The directory `absolute` (e.g. "/sys/class/hwmon") inside this tree; nullopt
    /// when it is missing.
    std::optional<SysfsDir> openDir(std::string_view absolute) const;

    /// Follows `entry` of `parent` (a link such as hwmonN or device, or a directory) and
    /// opens where it leads, only when that lies under <root>/sys/devices/, so a symlink
    /// can never lead the helper elsewhere.
    std::optional<SysfsDir> openDeviceDir(const SysfsDir& parent, std::string_view entry) const;

    /// `resolved` without the root prefix, as it would read on a real machine.
    std::string_view withoutRoot(std::string_view resolved) const;

private:
    explicit SysfsTree(std::string root)
        : root_(std::move(root)), devicesPrefix_(root_ + "/sys/devices/") {}

    bool isDevicePath(std::string_view path) const;
    std::optional<SysfsDir> openByRealPath(const std::string& path, bool deviceOnly) const;

    std::string root_; // resolved, no trailing slash; "" for the real /sys
    std::string devicesPrefix_;
};
