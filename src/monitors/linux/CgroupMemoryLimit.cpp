#include "CgroupMemoryLimit.h"

#include "DecimalField.h"
#include "TextFile.h"

#include <algorithm>

std::optional<CgroupMemoryPath> parseCgroupMemoryPath(std::string_view procSelfCgroup) {
    std::optional<CgroupMemoryPath> found;
    forEachLine(procSelfCgroup, [&](std::string_view line) {
        const auto first = line.find(':');
        const auto second = line.find(':', first == std::string_view::npos ? 0 : first + 1);
        if (first == std::string_view::npos || second == std::string_view::npos)
            return;
        const std::string_view controllers = line.substr(first + 1, second - first - 1);
        std::string path(line.substr(second + 1));
        if (path.empty() || path.front() != '/' || path.find("/..") != std::string::npos)
            path = "/";
        bool memoryV1 = false;
        for (std::string_view rest = controllers; !rest.empty();) {
            const auto comma = rest.find(',');
            memoryV1 = memoryV1 || rest.substr(0, comma) == "memory";
            rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
        }
        if (memoryV1)
            found = CgroupMemoryPath{false, path};
        else if (controllers.empty() && line.substr(0, first) == "0" && !found)
            found = CgroupMemoryPath{true, path};
    });
    return found;
}

std::optional<std::uint64_t> parseCgroupMemoryLimit(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.remove_suffix(1);
    const auto value = parseUnsigned(text);
    // v1 says "no limit" with LONG_MAX rounded down to a page.
    if (!value || *value >= (std::uint64_t{1} << 62))
        return std::nullopt;
    return value;
}

std::optional<std::uint64_t> readCgroupMemoryLimit(const std::string& root) {
    std::string text;
    if (!readTextFile(pathUnderRoot(root, "/proc/self/cgroup"), text))
        return std::nullopt;
    const auto group = parseCgroupMemoryPath(text);
    if (!group)
        return std::nullopt;
    const std::string mount =
        pathUnderRoot(root, group->unified ? "/sys/fs/cgroup" : "/sys/fs/cgroup/memory");
    const char* file = group->unified ? "/memory.max" : "/memory.limit_in_bytes";
    std::optional<std::uint64_t> tightest;
    // A parent's limit binds its children too, so the whole way up counts.
    for (std::string path = group->path;;) {
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
        if (readTextFile(mount + (path == "/" ? "" : path) + file, text))
            if (const auto limit = parseCgroupMemoryLimit(text))
                tightest = std::min(tightest.value_or(*limit), *limit);
        if (path == "/")
            break;
        path.erase(std::max<std::size_t>(path.rfind('/'), 1));
    }
    return tightest;
}
