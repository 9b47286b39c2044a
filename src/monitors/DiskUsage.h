#pragma once

/// Capacity of the root volume in GiB.
struct DiskUsage {
    double used = 0.0; ///< size - free, as df counts it: the root reserve is not "used"
    double total = 0.0;
    double available = 0.0; ///< what a user can still write (df's "Avail")

    bool operator==(const DiskUsage&) const = default;
};
