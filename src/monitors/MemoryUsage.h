#pragma once

/// Physical memory in GiB. `used` = active + wired + compressed.
struct MemoryUsage {
    double used = 0.0;
    double total = 0.0;
    double active = 0.0;
    double inactive = 0.0;
    double wired = 0.0;
    double compressed = 0.0;

    bool operator==(const MemoryUsage&) const = default;
};
