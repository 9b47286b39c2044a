#pragma once

#include "ThermalReadings.h"
#include "ThermalState.h"

#include <optional>

/// The readings used when there is no helper: a CPU temperature estimated from the
/// thermal pressure level (nominal 45, fair 65, serious 80, critical 95, no level or
/// any other value 50), no GPU temperature, no sensors and no fans.
ThermalReadings estimatedThermalReadings(std::optional<ThermalState> state);
