#include "ThermalEstimate.h"

namespace {

double estimatedCpuTemperature(std::optional<ThermalState> state) {
    if (!state)
        return 50.0;
    switch (*state) {
    case ThermalState::nominal:
        return 45.0;
    case ThermalState::fair:
        return 65.0;
    case ThermalState::serious:
        return 80.0;
    case ThermalState::critical:
        return 95.0;
    }
    return 50.0;
}

} // namespace

ThermalReadings estimatedThermalReadings(std::optional<ThermalState> state) {
    ThermalReadings readings;
    readings.cpuTemp = estimatedCpuTemperature(state);
    return readings;
}
