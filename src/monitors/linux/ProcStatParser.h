#pragma once

#include "../CpuTicks.h"

#include <string_view>
#include <vector>

/// The counters of one `cpuN` line of /proc/stat.
struct NumberedCpuTicks {
    unsigned cpu = 0;
    CpuTicks ticks;
};

/// Parses the `cpuN` lines of /proc/stat, folded into the four counters:
/// system = system + irq + softirq + steal and idle = idle + iowait. guest and
/// guest_nice are already inside user and nice, so they are not added again.
/// Lines with fewer than 4 or more than 10 counters, or non-numeric ones, are skipped.
std::vector<NumberedCpuTicks> parseProcStat(std::string_view text);
/// The same into `cpus`, replacing its content and reusing its storage.
void parseProcStat(std::string_view text, std::vector<NumberedCpuTicks>& cpus);
