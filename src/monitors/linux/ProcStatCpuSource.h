#pragma once

#include "../CpuTicks.h"
#include "ProcStatParser.h"
#include "TextFile.h"

#include <optional>
#include <string>
#include <vector>

/// Per-processor ticks from <root>/proc/stat.
///
/// The kernel's counters can go backwards (iowait may decrease, idle has been
/// seen to step back after suspend) and an offline CPU drops its line. This
/// source smooths that over: it reports every CPU seen since start in CPU-number
/// order, an offline CPU keeping its last counters, and never reports a counter
/// below the value it reported before.
class ProcStatCpuSource : public CpuTickSource {
public:
    explicit ProcStatCpuSource(std::string root = "/");
    const std::vector<CpuTicks>* readTicks() override;

private:
    OpenTextFile file;
    std::string buffer;
    std::vector<NumberedCpuTicks> parsed;
    std::vector<std::optional<CpuTicks>> reported; // indexed by CPU number
    std::vector<CpuTicks> ticks;
};
