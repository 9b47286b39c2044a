#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An open sysfs directory and the path it lies at. The path holds no symlink (it was
/// resolved, or walked without following any), so it is where the directory really is,
/// and attributes are opened relative to the descriptor, never through their full path.
class SysfsDir {
public:
    SysfsDir(std::string path, int fd) : path_(std::move(path)), fd_(fd) {}
    ~SysfsDir();
    SysfsDir(SysfsDir&& other) noexcept;
    SysfsDir& operator=(SysfsDir&& other) noexcept;
    SysfsDir(const SysfsDir&) = delete;
    SysfsDir& operator=(const SysfsDir&) = delete;

    const std::string& path() const { return path_; }
    int fd() const { return fd_; }

    /// `name` inside this directory, as a full path.
    std::string pathOf(std::string_view name) const;

    /// Names in the directory, sorted, without "." and ".."; empty when unreadable.
    std::vector<std::string> names();

    /// Calls `visit` with each name in the directory, in no particular order, without
    /// "." and ".."; a name lives only for its call.
    void forEachName(const std::function<void(std::string_view)>& visit);

    /// The whitelisted attribute `name`, read as SysfsAttribute reads it.
    std::optional<std::string> readText(std::string_view name) const;
    std::optional<long long> readInteger(std::string_view name) const;

private:
    std::string path_;
    int fd_ = -1;
    bool listed_ = false; // the descriptor's position is past the entries
};
