#include "StatvfsVolumeSource.h"

#include <cstdlib>
#include <pwd.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

std::optional<struct statvfs> queryFileSystem(const std::string& path) {
    struct statvfs info {};
    if (::statvfs(path.c_str(), &info) != 0)
        return std::nullopt;
    return info;
}

bool isReadOnlyImage(const struct statvfs& info) {
    return (info.f_flag & ST_RDONLY) != 0 && info.f_bavail == 0;
}

} // namespace

StatvfsVolumeSource::StatvfsVolumeSource(std::string path, std::string fallbackPath)
    : path(std::move(path)), fallbackPath(std::move(fallbackPath)) {}

std::string StatvfsVolumeSource::homeDirectory() {
    if (const char* home = std::getenv("HOME"); home && *home)
        return home;
    if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir)
        return user->pw_dir;
    return "/";
}

std::optional<VolumeCapacity> StatvfsVolumeSource::readCapacity() {
    std::optional<struct statvfs> info =
        queryFileSystem(readsFallback.value_or(false) ? fallbackPath : path);
    if (!info) {
        readsFallback.reset();
        return std::nullopt;
    }
    if (!readsFallback) {
        readsFallback = false;
        if (isReadOnlyImage(*info) && !fallbackPath.empty()) {
            if (auto home = queryFileSystem(fallbackPath)) {
                info = home;
                readsFallback = true;
            }
        }
    }
    const double blockSize = static_cast<double>(info->f_frsize);
    return VolumeCapacity{static_cast<double>(info->f_blocks) * blockSize,
                          static_cast<double>(info->f_bfree) * blockSize,
                          static_cast<double>(info->f_bavail) * blockSize};
}
