#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Where the memory controller keeps this process's group, from /proc/self/cgroup.
struct CgroupMemoryPath {
    bool unified = true; ///< cgroup v2 (memory.max); false for v1 (memory.limit_in_bytes)
    std::string path;    ///< "/user.slice/user-1000.slice/session-2.scope"
};

/// The v1 memory controller's line where there is one, else the v2 line. A path leading
/// outside this cgroup namespace ("/..") is taken as its root, the highest visible group.
std::optional<CgroupMemoryPath> parseCgroupMemoryPath(std::string_view procSelfCgroup);

/// A memory.max or memory.limit_in_bytes value; nullopt for "max" or v1's "no limit"
/// (the largest page-aligned 63-bit number).
std::optional<std::uint64_t> parseCgroupMemoryLimit(std::string_view text);

/// The tightest limit on this process's group and the groups above it, up to the
/// controller's mount under <root>/sys/fs/cgroup; nullopt when none is set.
std::optional<std::uint64_t> readCgroupMemoryLimit(const std::string& root);
