#include "LinuxMemorySource.h"

#include "MeminfoParser.h"
#include "TextFile.h"

#include <charconv>
#include <dirent.h>
#include <memory>
#include <string_view>

namespace {

// zram devices are made by hand or at boot; a minute's delay in seeing a new one is harmless.
constexpr std::chrono::minutes zramSearchInterval{1};

template <typename Function>
void forEachDirectoryEntry(const std::string& path, Function&& onName) {
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path.c_str()), ::closedir);
    if (!dir)
        return;
    while (const dirent* entry = ::readdir(dir.get()))
        onName(std::string_view(entry->d_name));
}

} // namespace

LinuxMemorySource::LinuxMemorySource(std::string root)
    : root(std::move(root)), meminfo(pathUnderRoot(this->root, "/proc/meminfo")),
      installed(readInstalledMemory(this->root)) {}

std::optional<std::uint64_t> LinuxMemorySource::readInstalledMemory(const std::string& root) {
    const std::string memoryDir = pathUnderRoot(root, "/sys/devices/system/memory");
    std::string text;
    if (!readTextFile(memoryDir + "/block_size_bytes", text))
        return std::nullopt;
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    std::uint64_t blockSize = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), blockSize, 16);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || blockSize == 0)
        return std::nullopt;

    std::uint64_t onlineBlocks = 0;
    forEachDirectoryEntry(memoryDir, [&](std::string_view name) {
        if (!name.starts_with("memory"))
            return;
        std::string state;
        if (readTextFile(memoryDir + "/" + std::string(name) + "/state", state) &&
            state.starts_with("online"))
            ++onlineBlocks;
    });
    if (onlineBlocks == 0)
        return std::nullopt;
    return onlineBlocks * blockSize;
}

void LinuxMemorySource::findZramDevices() {
    zramStats.clear();
    const std::string blockDir = pathUnderRoot(root, "/sys/block");
    forEachDirectoryEntry(blockDir, [&](std::string_view name) {
        if (name.starts_with("zram"))
            zramStats.emplace_back(blockDir + "/" + std::string(name) + "/mm_stat");
    });
}

std::uint64_t LinuxMemorySource::zramBytes() {
    const auto now = std::chrono::steady_clock::now();
    if (!zramSearched || now - *zramSearched >= zramSearchInterval) {
        findZramDevices();
        zramSearched = now;
    }
    std::uint64_t total = 0;
    for (OpenTextFile& mmStat : zramStats)
        if (mmStat.read(buffer))
            if (const auto used = parseZramMemUsed(buffer))
                total += *used;
    return total;
}

std::optional<MemoryCounters> LinuxMemorySource::readMemory() {
    if (!meminfo.read(buffer))
        return std::nullopt;
    const auto info = parseMeminfo(buffer);
    if (!info)
        return std::nullopt;
    MemoryCounters counters;
    counters.installed = installed.value_or(info->memTotal);
    counters.active = info->activeAnon + info->inactiveAnon;
    counters.inactive = info->activeFile + info->inactiveFile;
    counters.wired = info->unevictable + info->sUnreclaim + info->kernelStack + info->pageTables +
                     info->secPageTables;
    counters.compressed = info->zswap + zramBytes();
    return counters;
}
