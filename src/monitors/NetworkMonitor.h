#pragma once

#include "NetworkThroughput.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Cumulative byte counters of one network interface.
struct InterfaceCounters {
    std::string name;
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    bool counted = true; ///< the source's judgement: false for links whose bytes must not count
};

class InterfaceCounterSource {
public:
    virtual ~InterfaceCounterSource() = default;
    /// The source's own list, valid until the next read; null when it cannot be read.
    virtual const std::vector<InterfaceCounters>* readInterfaces() = 0;
};

/// Seconds on a clock that never jumps; injected so tests can stop or rewind it.
using MonotonicClock = std::function<double()>;
double monotonicSeconds();

/// Turns summed interface byte counters into receive and send rates in bytes per second.
class NetworkMonitor {
public:
    explicit NetworkMonitor(std::unique_ptr<InterfaceCounterSource> source,
                            MonotonicClock clock = monotonicSeconds);
    NetworkThroughput getThroughput();

    /// The summed (received, sent) counters of the counted interfaces; (0, 0) when the read fails.
    std::pair<std::uint64_t, std::uint64_t> counterSum();

private:
    std::unique_ptr<InterfaceCounterSource> source;
    MonotonicClock clock;
    std::uint64_t previousBytesIn = 0;
    std::uint64_t previousBytesOut = 0;
    double previousTimestamp;
    bool isFirstRead = true;
};
