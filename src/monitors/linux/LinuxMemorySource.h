#pragma once

#include "../MemoryMonitor.h"
#include "TextFile.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// Memory figures from <root>/proc/meminfo and zram devices.
///
/// active = anonymous pages, inactive = page cache, wired = memory the kernel
/// cannot reclaim or swap (unevictable, unreclaimable slab, kernel stacks, page
/// tables), compressed = zswap plus what zram devices hold. The zram devices are looked
/// for once a minute; their files, like meminfo, stay open between reads.
class LinuxMemorySource : public MemorySource {
public:
    explicit LinuxMemorySource(std::string root = "/");
    std::optional<MemoryCounters> readMemory() override;

    /// Installed memory: online memory blocks times the block size, read once
    /// because a large machine has hundreds of block files; nullopt when unknown.
    static std::optional<std::uint64_t> readInstalledMemory(const std::string& root);

private:
    std::uint64_t zramBytes();
    void findZramDevices();

    std::string root;
    OpenTextFile meminfo;
    std::optional<std::uint64_t> installed;
    std::string buffer;
    std::vector<OpenTextFile> zramStats;
    std::optional<std::chrono::steady_clock::time_point> zramSearched;
};
