#include "ProcessStatParser.h"

#include "DecimalField.h"

std::optional<ProcessReading> parseProcessStat(std::string_view stat, double ticksPerSecond) {
    const auto open = stat.find('(');
    const auto close = stat.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    std::string_view head = stat.substr(0, open);
    const auto pid = parseUnsigned(nextField(head));
    if (!pid || *pid > 1u << 30)
        return std::nullopt;

    // After the name come state (field 3) ... utime (14), stime (15) ... starttime (22).
    std::string_view rest = stat.substr(close + 1);
    std::optional<std::uint64_t> utime, stime, startTime;
    for (int field = 3; field <= 22; ++field) {
        const std::string_view value = nextField(rest);
        if (value.empty())
            return std::nullopt;
        if (field == 14)
            utime = parseUnsigned(value);
        else if (field == 15)
            stime = parseUnsigned(value);
        else if (field == 22)
            startTime = parseUnsigned(value);
    }
    if (!utime || !stime || !startTime || !(ticksPerSecond > 0.0))
        return std::nullopt;
    ProcessReading process;
    process.pid = static_cast<int>(*pid);
    process.name = std::string(stat.substr(open + 1, close - open - 1));
    process.cpuSeconds = static_cast<double>(*utime + *stime) / ticksPerSecond;
    process.startTime = *startTime;
    return process;
}

std::optional<std::uint64_t> parseStatmResidentPages(std::string_view statm) {
    if (!statm.empty() && statm.back() == '\n')
        statm.remove_suffix(1);
    nextField(statm);
    return parseUnsigned(nextField(statm));
}
