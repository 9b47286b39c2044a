#pragma once

#include "ProcessFigures.h"

#include <string>
#include <vector>

/// How much each figure may rise between the baseline and the end of a run.
struct GrowthTolerance {
    long threads = 0;
    long openFds = 0;
    long children = 0;
    long long heapBytes = 0;
};

/// One line per figure that rose by more than its tolerance, e.g.
/// "fds grew from 11 to 14 (tolerance 0)"; empty when nothing did.
std::vector<std::string> growthBeyond(const ProcessFigures& baseline, const ProcessFigures& end,
                                      const GrowthTolerance& tolerance);
