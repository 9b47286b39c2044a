#pragma once

#include <optional>

/// The machine's thermal pressure level, estimated without the helper.
enum class ThermalState { nominal = 0, fair = 1, serious = 2, critical = 3 };

/// A source of the thermal pressure level; nullopt when the machine has none.
class ThermalStateSource {
public:
    virtual ~ThermalStateSource() = default;
    virtual std::optional<ThermalState> thermalState() const = 0;
};
