#pragma once

#include "TopProcesses.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A mounted file system and its capacity in bytes.
struct MountedVolume {
    std::string mountPoint;
    double used = 0.0; ///< size - free, as df counts it
    double total = 0.0;

    bool operator==(const MountedVolume&) const = default;
};

/// What only the detail popovers show, read on demand rather than on every tick.
class DetailSource {
public:
    virtual ~DetailSource() = default;
    /// Every process that could be read; those that end during the read are left out.
    virtual std::vector<ProcessReading> readProcesses(bool withResident) = 0;
    /// The memory limit this process lives under (its control group's), in bytes;
    /// nullopt when there is none.
    virtual std::optional<std::uint64_t> readMemoryLimit() = 0;
    /// The local file systems, in mount order.
    virtual std::vector<MountedVolume> readVolumes() = 0;
};
