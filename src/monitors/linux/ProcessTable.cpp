#include "ProcessTable.h"

#include "ProcessStatParser.h"
#include "TextFile.h"

#include <dirent.h>
#include <memory>
#include <unistd.h>

namespace {

bool isPid(const char* name) {
    if (!*name)
        return false;
    for (; *name; ++name)
        if (*name < '0' || *name > '9')
            return false;
    return true;
}

} // namespace

std::vector<ProcessReading> readProcessTable(const std::string& procDir, bool withResident) {
    static const double ticksPerSecond = static_cast<double>(::sysconf(_SC_CLK_TCK));
    static const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    std::vector<ProcessReading> table;
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(procDir.c_str()), ::closedir);
    if (!dir)
        return table;
    std::string text;
    std::string path;
    while (const dirent* entry = ::readdir(dir.get())) {
        if (!isPid(entry->d_name))
            continue;
        path = procDir + '/' + entry->d_name;
        // An ended process reads as missing or empty: skipped, not an error.
        if (!readTextFile(path + "/stat", text))
            continue;
        auto process = parseProcessStat(text, ticksPerSecond);
        if (!process)
            continue;
        if (withResident) {
            if (!readTextFile(path + "/statm", text))
                continue;
            const auto pages = parseStatmResidentPages(text);
            if (!pages)
                continue;
            process->residentBytes = *pages * pageSize;
        }
        table.push_back(std::move(*process));
    }
    return table;
}
