#pragma once

#include "DiskUsage.h"

#include <memory>
#include <optional>

/// Capacity and free space of a volume in bytes.
struct VolumeCapacity {
    double size = 0.0;
    double free = 0.0;
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
