#pragma once

#include "SysfsTree.h"

#include <string>
#include <vector>

struct NvmlTemperature {
    std::string busId; ///< PCI address as sysfs names it, e.g. "0000:01:00.0"
    long long milliCelsius = 0;
};

/// Temperatures of the runtime-active NVIDIA GPUs, read through NVML. The library is
/// loaded only when such a GPU exists, so machines without one pay nothing for it.
std::vector<NvmlTemperature> readNvmlTemperatures(const SysfsTree& tree);
