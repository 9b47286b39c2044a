#pragma once

#include "ThermalReadings.h"

/// The speed of the first fan in whole RPM (truncated toward zero); 0 without fans.
/// A speed that is NaN, infinite or outside the 64-bit range ends the process.
long long firstFanSpeed(const ThermalReadings& readings);

/// The maximum of the first fan in whole RPM (truncated toward zero, at least 1); 0 when
/// that fan reports none, so nothing is made a share of a guessed maximum; 6000 without
/// fans. A maximum that is NaN, infinite or outside the 64-bit range ends the process.
long long firstFanMaxSpeed(const ThermalReadings& readings);
