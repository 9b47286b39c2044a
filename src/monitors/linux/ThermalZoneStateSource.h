#pragma once

#include "../ThermalState.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One trip point of a thermal zone, temperature in millidegrees Celsius.
struct ThermalTrip {
    std::string type; ///< "critical", "hot", "passive" or "active"
    long long milliCelsius = 0;
};

/// Estimates the thermal pressure level from the CPU thermal zones under
/// <root>/sys/class/thermal: the worst level of any CPU zone, or nullopt when the
/// machine has none.
class ThermalZoneStateSource : public ThermalStateSource {
public:
    explicit ThermalZoneStateSource(std::string rootDirectory = "/");

    std::optional<ThermalState> thermalState() const override;

    /// Whether a zone of this type measures the CPU.
    static bool isCpuZoneType(std::string_view type);
    /// The level of one zone at `milliCelsius` with these trip points.
    static ThermalState levelOf(long long milliCelsius, const std::vector<ThermalTrip>& trips);

private:
    std::string rootDirectory_;
};
