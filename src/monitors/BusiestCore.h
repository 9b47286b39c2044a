#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// The processor working hardest in one sample, which the overall average hides.
struct BusiestCore {
    std::size_t index = 0; ///< its place in the per-core list (0 is cpu0)
    double usage = 0.0;    ///< busy fraction 0...1

    bool operator==(const BusiestCore&) const = default;
};

/// The core with the highest usage, the first of equals; nullopt when no usage is a number.
std::optional<BusiestCore> findBusiestCore(const std::vector<double>& usages);
