#include "CPUMonitor.h"

#include "Fatal.h"

namespace {

std::uint64_t checkedAdd(std::uint64_t a, std::uint64_t b) {
    std::uint64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        fatalSamplingError("CPU tick sum overflowed");
    return sum;
}

} // namespace

CPUMonitor::CPUMonitor(std::unique_ptr<CpuTickSource> source) : source(std::move(source)) {}

CpuUsage CPUMonitor::getUsage() {
    const auto* ticks = source->readTicks();
    if (!ticks)
        return {};
    return {totalUsage(*ticks), perCoreUsage(*ticks)};
}

double CPUMonitor::getTotalUsage() {
    const auto* ticks = source->readTicks();
    return ticks ? totalUsage(*ticks) : 0.0;
}

std::vector<double> CPUMonitor::getPerCoreUsage() {
    const auto* ticks = source->readTicks();
    return ticks ? perCoreUsage(*ticks) : std::vector<double>{};
}

double CPUMonitor::totalUsage(const std::vector<CpuTicks>& ticks) {
    // The whole-machine sum is checked on purpose: a counter that overflows or
    // runs backwards means the source is broken, not that the load changed.
    std::uint64_t total = 0;
    std::uint64_t idle = 0;
    for (const CpuTicks& cpu : ticks) {
        total = checkedAdd(total, cpu.user);
        total = checkedAdd(total, cpu.system);
        total = checkedAdd(total, cpu.idle);
        total = checkedAdd(total, cpu.nice);
        idle = checkedAdd(idle, cpu.idle);
    }
    if (total < previousSystemTotal || idle < previousSystemIdle)
        fatalSamplingError("CPU tick counters went backwards");
    const std::uint64_t deltaTotal = total - previousSystemTotal;
    const std::uint64_t deltaIdle = idle - previousSystemIdle;
    previousSystemTotal = total;
    previousSystemIdle = idle;

    if (deltaTotal == 0)
        return 0.0;
    if (deltaIdle > deltaTotal)
        fatalSamplingError("CPU idle ticks advanced more than all ticks");
    return static_cast<double>(deltaTotal - deltaIdle) / static_cast<double>(deltaTotal);
}

std::vector<double> CPUMonitor::perCoreUsage(const std::vector<CpuTicks>& ticks) {
    const std::size_t count = ticks.size();
    if (previousTotalTicks.size() != count) {
        previousTotalTicks.assign(count, 0);
        previousIdleTicks.assign(count, 0);
    }

    // Per-processor values use wrap-around arithmetic and never fail.
    std::vector<double> usages;
    usages.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const CpuTicks& cpu = ticks[i];
        const std::uint64_t total = cpu.user + cpu.system + cpu.idle + cpu.nice;
        const std::uint64_t previousTotal = previousTotalTicks[i];
        const std::uint64_t previousIdle = previousIdleTicks[i];
        previousTotalTicks[i] = total;
        previousIdleTicks[i] = cpu.idle;
        const std::uint64_t deltaTotal = total - previousTotal;
        if (deltaTotal == 0) {
            usages.push_back(0.0);
            continue;
        }
        const std::uint64_t busy = deltaTotal - cpu.idle + previousIdle;
        usages.push_back(static_cast<double>(busy) / static_cast<double>(deltaTotal));
    }
    return usages;
}
