#include "TopProcesses.h"

#include <algorithm>

namespace {

struct Ranked {
    int pid;
    ProcessFigure figure;
};

// Highest first; equal figures in pid order, so the list does not shuffle between ticks.
std::vector<ProcessFigure> topOf(std::vector<Ranked> ranked) {
    const auto last =
        ranked.begin() + static_cast<std::ptrdiff_t>(std::min(ranked.size(), TopProcesses::shown));
    std::partial_sort(ranked.begin(), last, ranked.end(), [](const Ranked& a, const Ranked& b) {
        return a.figure.value != b.figure.value ? a.figure.value > b.figure.value : a.pid < b.pid;
    });
    std::vector<ProcessFigure> top;
    for (auto it = ranked.begin(); it != last; ++it)
        top.push_back(std::move(it->figure));
    return top;
}

} // namespace

std::vector<ProcessFigure> TopProcesses::busiest(const std::vector<ProcessReading>& table,
                                                 double now) {
    if (previousTime && now >= *previousTime && now - *previousTime < minimumInterval)
        return lastBusiest;
    std::vector<Ranked> ranked;
    if (previousTime && now > *previousTime) {
        const double seconds = now - *previousTime;
        for (const ProcessReading& process : table) {
            const auto seen = previous.find(process.pid);
            if (seen == previous.end() || seen->second.startTime != process.startTime)
                continue;
            const double used = process.cpuSeconds - seen->second.cpuSeconds;
            if (used > 0.0)
                ranked.push_back({process.pid, {process.name, used / seconds}});
        }
    }
    previous.clear();
    for (const ProcessReading& process : table)
        previous[process.pid] = {process.startTime, process.cpuSeconds};
    previousTime = now;
    lastBusiest = topOf(std::move(ranked));
    return lastBusiest;
}

void TopProcesses::forget() {
    previous.clear();
    previousTime.reset();
    lastBusiest.clear();
}

std::vector<ProcessFigure> TopProcesses::largest(const std::vector<ProcessReading>& table) {
    std::vector<Ranked> ranked;
    for (const ProcessReading& process : table)
        if (process.residentBytes > 0)
            ranked.push_back({process.pid, {process.name, double(process.residentBytes)}});
    return topOf(std::move(ranked));
}
