#pragma once

#include "../DetailSource.h"

#include <string>

/// Processes from <root>/proc, the memory limit from this process's control group and the
/// local file systems from <root>/proc/self/mounts, each measured with statvfs.
class LinuxDetailSource : public DetailSource {
public:
    explicit LinuxDetailSource(std::string root = "/");
    std::vector<ProcessReading> readProcesses(bool withResident) override;
    std::optional<std::uint64_t> readMemoryLimit() override;
    std::vector<MountedVolume> readVolumes() override;

private:
    std::string root;
};
