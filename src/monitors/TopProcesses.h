#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

/// One process as the process table shows it.
struct ProcessReading {
    int pid = 0;
    std::string name;
    double cpuSeconds = 0.0;         ///< user and system time so far
    std::uint64_t startTime = 0;     ///< start, in clock ticks since boot: tells a reused pid apart
    std::uint64_t residentBytes = 0; ///< 0 when not read
};

/// A process's name and one figure of it: a share of one core (1.0 is one core busy the
/// whole interval; a process with many threads can pass it) or resident bytes.
struct ProcessFigure {
    std::string name;
    double value = 0.0;

    bool operator==(const ProcessFigure&) const = default;
};

/// The processes that used the most CPU between two process tables, and those holding the
/// most resident memory. Only processes with a figure above zero are listed.
class TopProcesses {
public:
    static constexpr std::size_t shown = 5;
    /// Over a shorter interval the clock-tick rounding says more than the load does.
    static constexpr double minimumInterval = 1.0;

    /// Share of one core each process used since the previous table. A process needs two
    /// tables: one started in between shows from the next, and a pid now held by another
    /// process starts over. Empty until a second table; a table less than
    /// `minimumInterval` after the previous one returns the last list and is not kept.
    std::vector<ProcessFigure> busiest(const std::vector<ProcessReading>& table, double now);
    /// Drops the previous table, so the next call starts over.
    void forget();

    /// The processes with the most resident memory, in bytes.
    static std::vector<ProcessFigure> largest(const std::vector<ProcessReading>& table);

private:
    struct Seen {
        std::uint64_t startTime = 0;
        double cpuSeconds = 0.0;
    };
    std::unordered_map<int, Seen> previous;
    std::optional<double> previousTime;
    std::vector<ProcessFigure> lastBusiest;
};
