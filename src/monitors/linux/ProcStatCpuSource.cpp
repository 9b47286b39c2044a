#include "ProcStatCpuSource.h"

#include <algorithm>

ProcStatCpuSource::ProcStatCpuSource(std::string root) : file(pathUnderRoot(root, "/proc/stat")) {}

const std::vector<CpuTicks>* ProcStatCpuSource::readTicks() {
    if (!file.read(buffer))
        return nullptr;
    parseProcStat(buffer, parsed);
    if (parsed.empty())
        return nullptr;

    for (const NumberedCpuTicks& cpu : parsed) {
        if (cpu.cpu >= reported.size())
            reported.resize(cpu.cpu + 1);
        auto& last = reported[cpu.cpu];
        if (!last) {
            last = cpu.ticks;
            continue;
        }
        last->user = std::max(last->user, cpu.ticks.user);
        last->system = std::max(last->system, cpu.ticks.system);
        last->idle = std::max(last->idle, cpu.ticks.idle);
        last->nice = std::max(last->nice, cpu.ticks.nice);
    }

    ticks.clear();
    for (const auto& cpu : reported)
        if (cpu)
            ticks.push_back(*cpu);
    return &ticks;
}
