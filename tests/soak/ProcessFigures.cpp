#include "ProcessFigures.h"

#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VORLUNE_SOAK_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define VORLUNE_SOAK_ASAN 1
#endif

#ifdef VORLUNE_SOAK_ASAN
#if __has_include(<sanitizer/allocator_interface.h>)
#include <sanitizer/allocator_interface.h>
#else
// GCC's libasan exports the function but GCC ships no header for it (clang does).
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif
#else
#include <malloc.h>
#endif

namespace {

std::string readWholeFile(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

long long heapInUse() {
#ifdef VORLUNE_SOAK_ASAN
    // ASan replaces malloc; glibc's counters would see none of the program's blocks.
    return static_cast<long long>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    // Large blocks are mapped on their own and counted apart from the arenas.
    return static_cast<long long>(info.uordblks + info.hblkhd);
#endif
}

long countChildren() {
    DIR* processes = opendir("/proc");
    if (!processes)
        return -1;
    const long self = static_cast<long>(getpid());
    long children = 0;
    while (const dirent* entry = readdir(processes)) {
        char* end = nullptr;
        std::strtol(entry->d_name, &end, 10);
        if (end == entry->d_name || *end != '\0')
            continue;
        const std::string stat = readWholeFile(std::string("/proc/") + entry->d_name + "/stat");
        if (!stat.empty() && parentFromStat(stat) == self)
            ++children;
    }
    closedir(processes);
    return children;
}

} // namespace

long countDirectoryEntries(const std::string& path) {
    DIR* directory = opendir(path.c_str());
    if (!directory)
        return -1;
    long count = 0;
    while (const dirent* entry = readdir(directory)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            ++count;
    }
    closedir(directory);
    return count;
}

long threadsFromStatus(const std::string& statusText) {
    std::istringstream lines(statusText);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("Threads:", 0) == 0)
            return std::strtol(line.c_str() + 8, nullptr, 10);
    }
    return -1;
}

long parentFromStat(const std::string& statText) {
    // "pid (comm) state ppid ...": the command ends at the last ')'.
    const auto close = statText.rfind(')');
    if (close == std::string::npos)
        return -1;
    std::istringstream fields(statText.substr(close + 1));
    std::string state;
    long parent = -1;
    fields >> state >> parent;
    return fields ? parent : -1;
}

ProcessFigures readProcessFigures() {
    ProcessFigures figures;
    figures.threads = threadsFromStatus(readWholeFile("/proc/self/status"));
    // opendir holds one descriptor of its own while counting.
    figures.openFds = countDirectoryEntries("/proc/self/fd") - 1;
    figures.children = countChildren();
    figures.heapBytes = heapInUse();
    return figures;
}

std::string describeFigures(const ProcessFigures& figures) {
    return "threads=" + std::to_string(figures.threads) +
           " fds=" + std::to_string(figures.openFds) +
           " children=" + std::to_string(figures.children) +
           " heap=" + std::to_string(figures.heapBytes);
}
