#include "SysfsTree.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <dirent.h>

namespace {

std::optional<std::string> realPath(const std::string& path) {
    char buffer[PATH_MAX];
    if (::realpath(path.c_str(), buffer) == nullptr)
        return std::nullopt;
    return std::string(buffer);
}

} // namespace

std::optional<SysfsTree> SysfsTree::open(const std::string& root) {
    if (root.empty())
        return SysfsTree(std::string());
    auto resolved = realPath(root);
    if (!resolved)
        return std::nullopt;
    if (*resolved == "/")
        resolved->clear();
    return SysfsTree(std::move(*resolved));
}

std::string SysfsTree::path(std::string_view absolute) const {
    std::string result = root_;
    result.append(absolute);
    return result;
}

std::optional<std::string> SysfsTree::resolveDeviceDir(const std::string& path) const {
    auto resolved = realPath(path);
    if (!resolved)
        return std::nullopt;
    const std::string prefix = root_ + "/sys/devices/";
    if (resolved->compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    return resolved;
}

std::string_view SysfsTree::withoutRoot(std::string_view resolved) const {
    if (resolved.substr(0, root_.size()) == root_)
        resolved.remove_prefix(root_.size());
    return resolved;
}

std::vector<std::string> SysfsTree::list(const std::string& dir) {
    std::vector<std::string> names;
    DIR* stream = ::opendir(dir.c_str());
    if (stream == nullptr)
        return names;
    while (const dirent* entry = ::readdir(stream)) {
        std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    ::closedir(stream);
    std::sort(names.begin(), names.end());
    return names;
}
