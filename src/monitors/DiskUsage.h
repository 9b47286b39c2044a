#pragma once

/// Capacity of the root volume in GiB.
struct DiskUsage {
    double used = 0.0;
    double total = 0.0;

    bool operator==(const DiskUsage&) const = default;
};
