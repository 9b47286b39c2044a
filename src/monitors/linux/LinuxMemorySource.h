#pragma once

#include "../MemoryMonitor.h"

#include <optional>
#include <string>

/// Memory figures from <root>/proc/meminfo and zram devices.
///
/// active = anonymous pages, inactive = page cache, wired = memory the kernel
/// cannot reclaim or swap (unevictable, unreclaimable slab, kernel stacks, page
/// tables), compressed = zswap plus what zram devices hold.
class LinuxMemorySource : public MemorySource {
public:
    explicit LinuxMemorySource(std::string root = "/");
    std::optional<MemoryCounters> readMemory() override;

    /// Installed memory: online memory blocks times the block size, read once
    /// because a large machine has hundreds of block files; nullopt when unknown.
    static std::optional<std::uint64_t> readInstalledMemory(const std::string& root);

private:
    std::uint64_t zramBytes();

    std::string root;
    std::string meminfoPath;
    std::optional<std::uint64_t> installed;
    std::string buffer;
};
