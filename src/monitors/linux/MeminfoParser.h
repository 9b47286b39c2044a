#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The /proc/meminfo fields the memory figures are built from, in bytes
/// (absent fields are 0).
struct Meminfo {
    std::uint64_t memTotal = 0;
    std::uint64_t activeAnon = 0;
    std::uint64_t inactiveAnon = 0;
    std::uint64_t activeFile = 0;
    std::uint64_t inactiveFile = 0;
    std::uint64_t unevictable = 0;
    std::uint64_t sUnreclaim = 0;
    std::uint64_t kernelStack = 0;
    std::uint64_t pageTables = 0;
    std::uint64_t secPageTables = 0;
    std::uint64_t zswap = 0;
};

/// Parses /proc/meminfo (values in KiB); nullopt when MemTotal is missing.
std::optional<Meminfo> parseMeminfo(std::string_view text);

/// The third field (mem_used_total, bytes) of a zram device's mm_stat.
std::optional<std::uint64_t> parseZramMemUsed(std::string_view mmStat);
