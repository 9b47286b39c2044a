#pragma once

#include "MemoryUsage.h"

#include <cstdint>
#include <memory>
#include <optional>

/// Memory counters in bytes, as a platform source reports them.
struct MemoryCounters {
    std::uint64_t installed = 0;
    std::uint64_t active = 0;
    std::uint64_t inactive = 0;
    std::uint64_t wired = 0;
    std::uint64_t compressed = 0;
};

class MemorySource {
public:
    virtual ~MemorySource() = default;
    /// nullopt when the statistics cannot be read.
    virtual std::optional<MemoryCounters> readMemory() = 0;
};

/// Reports used and installed physical memory in GiB.
class MemoryMonitor {
public:
    explicit MemoryMonitor(std::unique_ptr<MemorySource> source);
    MemoryUsage getMemoryUsage();

private:
    std::unique_ptr<MemorySource> source;
};
