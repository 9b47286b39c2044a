#include "NetworkMonitor.h"

#include "Fatal.h"

#include <ctime>

double monotonicSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

NetworkMonitor::NetworkMonitor(std::unique_ptr<InterfaceCounterSource> source, MonotonicClock clock)
    : source(std::move(source)), clock(std::move(clock)), previousTimestamp(this->clock()) {}

std::pair<std::uint64_t, std::uint64_t> NetworkMonitor::counterSum() {
    const auto* interfaces = source->readInterfaces();
    if (!interfaces)
        return {0, 0};
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    for (const InterfaceCounters& interface : *interfaces) {
        if (interface.name.empty())
            fatalSamplingError("network interface without a name");
        if (!interface.counted)
            continue;
        if (__builtin_add_overflow(received, interface.received, &received) ||
            __builtin_add_overflow(sent, interface.sent, &sent))
            fatalSamplingError("network byte counter sum overflowed");
    }
    return {received, sent};
}

NetworkThroughput NetworkMonitor::getThroughput() {
    const auto [received, sent] = counterSum();
    const double now = clock();
    if (isFirstRead) {
        previousBytesIn = received;
        previousBytesOut = sent;
        previousTimestamp = now;
        isFirstRead = false;
        return {};
    }
    const double elapsed = now - previousTimestamp;
    if (!(elapsed > 0.0))
        return {};
    // A falling sum (an interface went away, a counter was reset) counts as no
    // traffic for that read and becomes the new baseline.
    const std::uint64_t deltaIn = received >= previousBytesIn ? received - previousBytesIn : 0;
    const std::uint64_t deltaOut = sent >= previousBytesOut ? sent - previousBytesOut : 0;
    previousBytesIn = received;
    previousBytesOut = sent;
    previousTimestamp = now;
    return {static_cast<double>(deltaIn) / elapsed, static_cast<double>(deltaOut) / elapsed};
}
