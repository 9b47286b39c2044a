#pragma once

#include "DetailSample.h"
#include "DetailSource.h"
#include "NetworkMonitor.h"
#include "TopProcesses.h"

#include <memory>

/// Reads the detail figures the open popovers want, on the sampling queue, and keeps
/// the previous process table the CPU shares are measured against.
class DetailSampler {
public:
    explicit DetailSampler(std::unique_ptr<DetailSource> source,
                           MonotonicClock clock = monotonicSeconds);

    /// Reads `figures` now.
    DetailSample sample(DetailFigures figures);
    /// Forgets what only figures no longer wanted need: a popover opened later measures
    /// from its own first table, not from one taken minutes before.
    void keepOnly(DetailFigures wanted);

private:
    std::unique_ptr<DetailSource> source;
    MonotonicClock clock;
    TopProcesses topProcesses;
};
