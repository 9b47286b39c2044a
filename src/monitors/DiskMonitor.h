#pragma once

#include "DiskUsage.h"

#include <memory>
#include <optional>

/// Capacity and free space of a volume in bytes.
/// A file system's figures in bytes, as statvfs gives them.
struct VolumeCapacity {
    double size = 0.0;
    double free = 0.0;      ///< every free block, the root reserve included
    double available = 0.0; ///< what an unprivileged user can still write
};

class VolumeSource {
public:
    virtual ~VolumeSource() = default;
    /// nullopt when the file system cannot be queried.
    virtual std::optional<VolumeCapacity> readCapacity() = 0;
};

/// Reports used and total capacity of the root volume in GiB.
class DiskMonitor {
public:
    explicit DiskMonitor(std::unique_ptr<VolumeSource> source);
    DiskUsage getDiskUsage();

private:
    std::unique_ptr<VolumeSource> source;
};
