#pragma once

#include "DetailSource.h"

#include <cstdint>
#include <optional>
#include <vector>

/// Figures a detail popover asks the sampler for, as bits of `DetailFigures`.
namespace DetailFigure {
enum : unsigned {
    busiestProcesses = 1u << 0,
    largestProcesses = 1u << 1,
    memoryLimit = 1u << 2,
    mountedVolumes = 1u << 3,
};
inline constexpr int count = 4;
inline constexpr unsigned all = (1u << count) - 1;
} // namespace DetailFigure
using DetailFigures = unsigned;

/// The detail figures of one read; those not in `figures` were not read.
struct DetailSample {
    DetailFigures figures = 0;
    std::vector<ProcessFigure> busiestProcesses; ///< share of one core
    std::vector<ProcessFigure> largestProcesses; ///< resident bytes
    std::optional<std::uint64_t> memoryLimit;    ///< bytes
    std::vector<MountedVolume> mountedVolumes;
};
