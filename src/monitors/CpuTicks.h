#pragma once

#include <cstdint>
#include <vector>

/// Cumulative tick counters of one logical processor.
struct CpuTicks {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t nice = 0;

    bool operator==(const CpuTicks&) const = default;
};

/// A source of per-processor tick counters, in processor order.
class CpuTickSource {
public:
    virtual ~CpuTickSource() = default;
    /// The source's own list, valid until the next read (so a warm tick allocates
    /// nothing); null when the read fails.
    virtual const std::vector<CpuTicks>* readTicks() = 0;
};
