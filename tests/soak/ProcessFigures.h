#pragma once

#include <string>

/// What a long-running process could pile up, read from /proc/self and the allocator.
struct ProcessFigures {
    long threads = 0;
    long openFds = 0;
    /// Child processes not yet reaped, zombies included.
    long children = 0;
    /// Bytes the program holds on the heap right now.
    long long heapBytes = 0;
};

/// The figures of this process at this moment.
ProcessFigures readProcessFigures();

/// "threads=6 fds=11 children=0 heap=1234567"
std::string describeFigures(const ProcessFigures& figures);

/// Counts a directory's entries other than "." and "..", -1 when it cannot be read.
long countDirectoryEntries(const std::string& path);
/// The "Threads:" line of a /proc/<pid>/status text, -1 when absent.
long threadsFromStatus(const std::string& statusText);
/// The parent pid field of a /proc/<pid>/stat text (the command may hold spaces and ')').
long parentFromStat(const std::string& statText);
