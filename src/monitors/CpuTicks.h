#pragma once

#include <cstdint>
#include <optional>
#include <vector>

/// Cumulative tick counters of one logical processor.
struct CpuTicks {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t nice = 0;

    bool operator==(const CpuTicks&) const = default;
};

/// A source of per-processor tick counters, in processor order; nullopt when the read fails.
class CpuTickSource {
public:
    virtual ~CpuTickSource() = default;
    virtual std::optional<std::vector<CpuTicks>> readTicks() = 0;
};
