#include "BusiestCore.h"

#include <cmath>

std::optional<BusiestCore> findBusiestCore(const std::vector<double>& usages) {
    std::optional<BusiestCore> busiest;
    for (std::size_t i = 0; i < usages.size(); ++i) {
        if (std::isnan(usages[i]))
            continue;
        if (!busiest || usages[i] > busiest->usage)
            busiest = BusiestCore{i, usages[i]};
    }
    return busiest;
}
