#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One line of /proc/self/mounts.
struct MountEntry {
    std::string device;
    std::string mountPoint; ///< with the kernel's octal escapes ("\040" for a space) undone
    std::string type;
};

/// The lines of /proc/self/mounts; lines with fewer than three fields are skipped.
std::vector<MountEntry> parseMounts(std::string_view text);

/// The file systems that hold a user's files on local disks and removable media:
/// ext2/3/4, xfs, btrfs, f2fs, bcachefs, vfat, exfat and NTFS, not on loop devices
/// (snaps and disk images). Each device is listed once, at its first mount point, since
/// btrfs subvolumes and bind mounts of one device share its space.
std::vector<MountEntry> localVolumes(const std::vector<MountEntry>& mounts);
