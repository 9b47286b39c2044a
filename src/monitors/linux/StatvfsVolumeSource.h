#pragma once

#include "../DiskMonitor.h"

#include <optional>
#include <string>

/// Capacity of the file system holding `path`, through statvfs.
///
/// On image-based distributions `/` is a read-only image (composefs or an
/// overlay root) that always reads 100 % full, which says nothing about the
/// space the user has; there the file system holding `fallbackPath` (the home
/// directory) is reported instead. Which one is decided at the first read, so each
/// later read is a single statvfs.
class StatvfsVolumeSource : public VolumeSource {
public:
    explicit StatvfsVolumeSource(std::string path = "/",
                                 std::string fallbackPath = homeDirectory());
    std::optional<VolumeCapacity> readCapacity() override;

    static std::string homeDirectory();

private:
    std::string path;
    std::string fallbackPath;
    std::optional<bool> readsFallback; // decided at the first read that succeeds
};
