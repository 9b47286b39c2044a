#pragma once

#include "../TopProcesses.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// The pid, name (comm), user + system time and start time of a /proc/<pid>/stat line,
/// times in clock ticks turned into seconds with `ticksPerSecond`. The name may hold
/// spaces and parentheses, so it runs to the last ')'. nullopt for a line cut short.
std::optional<ProcessReading> parseProcessStat(std::string_view stat, double ticksPerSecond);

/// The resident set of a /proc/<pid>/statm line, in pages (its second field).
std::optional<std::uint64_t> parseStatmResidentPages(std::string_view statm);
