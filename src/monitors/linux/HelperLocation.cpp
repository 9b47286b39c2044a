#include "HelperLocation.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

bool isExecutableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

bool isRootOwnedSetuid(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid == 0 &&
           (status.st_mode & S_ISUID) != 0;
}

bool isTrustedHelperSource(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_uid == 0 || status.st_uid == ::getuid()) &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string fileIdentity(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return {};
    return std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino) + ":" +
           std::to_string(info.st_size) + ":" + std::to_string(info.st_ctim.tv_sec) + "." +
           std::to_string(info.st_ctim.tv_nsec);
}

std::optional<std::string> executableDirectory() {
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error || !executable.has_parent_path())
        return std::nullopt;
    return executable.parent_path().string();
}

std::optional<std::string> locateHelperFrom(const std::string& executableDirectory,
                                            const std::string& buildHelperPath) {
    std::vector<std::string> candidates;
    if (!executableDirectory.empty()) {
        const std::filesystem::path prefix = std::filesystem::path(executableDirectory) / "..";
        candidates.push_back((prefix / "libexec/vorlune/smc_helper").lexically_normal().string());
        candidates.push_back((prefix / "SMCHelper/smc_helper").lexically_normal().string());
    }
    if (!buildHelperPath.empty())
        candidates.push_back(buildHelperPath);
    // A helper someone else could have swapped is passed over wherever it lies.
    for (const std::string& candidate : candidates) {
        if (isExecutableFile(candidate) && isTrustedHelperSource(candidate))
            return candidate;
    }
    return std::nullopt;
}
