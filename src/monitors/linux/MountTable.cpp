#include "MountTable.h"

#include "DecimalField.h"

#include <algorithm>
#include <array>

namespace {

// The kernel writes space, tab, newline and backslash in paths as \ and three octal digits.
std::string unescape(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const auto isOctal = [&](std::size_t at) {
            return at < field.size() && field[at] >= '0' && field[at] <= '7';
        };
        if (field[i] == '\\' && isOctal(i + 1) && isOctal(i + 2) && isOctal(i + 3)) {
            text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                      (field[i + 3] - '0'));
            i += 3;
        } else {
            text += field[i];
        }
    }
    return text;
}

bool isDiskFileSystem(std::string_view type) {
    static constexpr std::array<std::string_view, 13> types = {
        "ext2", "ext3",  "ext4", "xfs",   "btrfs", "f2fs",    "bcachefs",
        "vfat", "exfat", "ntfs", "ntfs3", "jfs",   "fuseblk", // fuseblk: ntfs-3g
    };
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace

std::vector<MountEntry> parseMounts(std::string_view text) {
    std::vector<MountEntry> mounts;
    forEachLine(text, [&](std::string_view line) {
        const std::string_view device = nextField(line);
        const std::string_view mountPoint = nextField(line);
        const std::string_view type = nextField(line);
        if (!type.empty())
            mounts.push_back({unescape(device), unescape(mountPoint), std::string(type)});
    });
    return mounts;
}

std::vector<MountEntry> localVolumes(const std::vector<MountEntry>& mounts) {
    std::vector<MountEntry> volumes;
    for (const MountEntry& mount : mounts) {
        if (!isDiskFileSystem(mount.type) || mount.device.starts_with("/dev/loop"))
            continue;
        const bool seen = std::any_of(volumes.begin(), volumes.end(), [&](const MountEntry& v) {
            return v.device == mount.device;
        });
        if (!seen)
            volumes.push_back(mount);
    }
    return volumes;
}
