#include "LinuxDetailSource.h"

#include "CgroupMemoryLimit.h"
#include "MountTable.h"
#include "ProcessTable.h"
#include "TextFile.h"

#include <sys/statvfs.h>

LinuxDetailSource::LinuxDetailSource(std::string root) : root(std::move(root)) {}

std::vector<ProcessReading> LinuxDetailSource::readProcesses(bool withResident) {
    return readProcessTable(pathUnderRoot(root, "/proc"), withResident);
}

std::optional<std::uint64_t> LinuxDetailSource::readMemoryLimit() {
    return readCgroupMemoryLimit(root);
}

std::vector<MountedVolume> LinuxDetailSource::readVolumes() {
    std::string text;
    if (!readTextFile(pathUnderRoot(root, "/proc/self/mounts"), text))
        return {};
    std::vector<MountedVolume> volumes;
    for (const MountEntry& mount : localVolumes(parseMounts(text))) {
        struct statvfs info {};
        // A drive pulled out since the mounts were read fails here and is left out.
        if (::statvfs(pathUnderRoot(root, mount.mountPoint).c_str(), &info) != 0 ||
            info.f_blocks == 0)
            continue;
        const double blockSize = static_cast<double>(info.f_frsize);
        volumes.push_back({mount.mountPoint,
                           static_cast<double>(info.f_blocks - info.f_bfree) * blockSize,
                           static_cast<double>(info.f_blocks) * blockSize});
    }
    return volumes;
}
