#include "SysfsDir.h"

#include "SysfsAttribute.h"

#include <algorithm>
#include <dirent.h>
#include <unistd.h>

SysfsDir::~SysfsDir() {
    if (fd_ >= 0)
        ::close(fd_);
}

SysfsDir::SysfsDir(SysfsDir&& other) noexcept
    : path_(std::move(other.path_)), fd_(other.fd_), listed_(other.listed_) {
    other.fd_ = -1;
}

SysfsDir& SysfsDir::operator=(SysfsDir&& other) noexcept {
    if (this != &other) {
        if (fd_ >= 0)
            ::close(fd_);
        path_ = std::move(other.path_);
        fd_ = other.fd_;
        listed_ = other.listed_;
        other.fd_ = -1;
    }
    return *this;
}

std::string SysfsDir::pathOf(std::string_view name) const {
    std::string path = path_;
    path += '/';
    path.append(name);
    return path;
}

std::vector<std::string> SysfsDir::names() {
    std::vector<std::string> names;
    forEachName([&names](std::string_view name) { names.emplace_back(name); });
    std::sort(names.begin(), names.end());
    return names;
}

void SysfsDir::forEachName(const std::function<void(std::string_view)>& visit) {
    if (fd_ < 0 || (listed_ && ::lseek(fd_, 0, SEEK_SET) != 0))
        return;
    listed_ = true;
    // A hwmon chip with every attribute a board has fits in one or two reads.
    alignas(dirent64) char buffer[16384];
    for (;;) {
        const ssize_t count = ::getdents64(fd_, buffer, sizeof buffer);
        if (count <= 0)
            return;
        for (ssize_t offset = 0; offset < count;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + offset);
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                visit(name);
            offset += entry->d_reclen;
        }
    }
}

std::optional<std::string> SysfsDir::readText(std::string_view name) const {
    return readAttributeText(fd_, name);
}

std::optional<long long> SysfsDir::readInteger(std::string_view name) const {
    return readAttributeInteger(fd_, name);
}
