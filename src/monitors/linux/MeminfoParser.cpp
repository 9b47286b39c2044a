#include "MeminfoParser.h"

#include "DecimalField.h"

#include <array>
#include <utility>

std::optional<Meminfo> parseMeminfo(std::string_view text) {
    Meminfo info;
    const std::array<std::pair<std::string_view, std::uint64_t*>, 11> fields{{
        {"MemTotal", &info.memTotal},
        {"Active(anon)", &info.activeAnon},
        {"Inactive(anon)", &info.inactiveAnon},
        {"Active(file)", &info.activeFile},
        {"Inactive(file)", &info.inactiveFile},
        {"Unevictable", &info.unevictable},
        {"SUnreclaim", &info.sUnreclaim},
        {"KernelStack", &info.kernelStack},
        {"PageTables", &info.pageTables},
        {"SecPageTables", &info.secPageTables},
        {"Zswap", &info.zswap},
    }};
    bool sawTotal = false;
    forEachLine(text, [&](std::string_view line) {
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return;
        const std::string_view key = line.substr(0, colon);
        for (const auto& [name, target] : fields) {
            if (key != name)
                continue;
            std::string_view rest = line.substr(colon + 1);
            const auto kib = parseUnsigned(nextField(rest));
            if (!kib || *kib > UINT64_MAX / 1024)
                return;
            *target = *kib * 1024;
            sawTotal = sawTotal || target == &info.memTotal;
            return;
        }
    });
    if (!sawTotal)
        return std::nullopt;
    return info;
}

std::optional<std::uint64_t> parseZramMemUsed(std::string_view mmStat) {
    nextField(mmStat);
    nextField(mmStat);
    return parseUnsigned(nextField(mmStat));
}
