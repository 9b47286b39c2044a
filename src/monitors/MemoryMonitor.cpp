#include "MemoryMonitor.h"

#include "GiB.h"

MemoryMonitor::MemoryMonitor(std::unique_ptr<MemorySource> source) : source(std::move(source)) {}

MemoryUsage MemoryMonitor::getMemoryUsage() {
    const auto counters = source->readMemory();
    if (!counters)
        return {};
    MemoryUsage usage;
    usage.total = gibFromBytes(static_cast<double>(counters->installed));
    usage.active = gibFromBytes(static_cast<double>(counters->active));
    usage.inactive = gibFromBytes(static_cast<double>(counters->inactive));
    usage.wired = gibFromBytes(static_cast<double>(counters->wired));
    usage.compressed = gibFromBytes(static_cast<double>(counters->compressed));
    // Inactive memory can be reclaimed at once, so it does not count as used.
    usage.used = usage.active + usage.wired + usage.compressed;
    return usage;
}
