#pragma once

#include "DetailSample.h"
#include "DiskUsage.h"
#include "MemoryUsage.h"
#include "NetworkThroughput.h"
#include "ThermalReadings.h"

#include <vector>

/// Everything one sampling job reads, carried by value to the main thread.
struct SystemSample {
    double cpuUsage = 0.0;
    std::vector<double> coreUsages;
    MemoryUsage memory;
    DiskUsage disk;
    NetworkThroughput network;
    ThermalReadings thermal;
    DetailSample details;
};
