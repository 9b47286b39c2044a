#include "FanFigures.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace {

// The helper must never report such a speed; clamping it would hide the fault.
long long checkedWholeRpm(double rpm, const char* what) {
    constexpr double lowest = -9223372036854775808.0; // -2^63
    constexpr double beyondHighest = 9223372036854775808.0;
    const double whole = std::trunc(rpm);
    if (!std::isfinite(whole) || whole < lowest || whole >= beyondHighest)
        qFatal("Fan %s of %g RPM cannot be converted to an integer", what, rpm);
    return static_cast<long long>(whole);
}

} // namespace

long long firstFanSpeed(const ThermalReadings& readings) {
    if (readings.fans.empty())
        return 0;
    return checkedWholeRpm(readings.fans.front().actual, "speed");
}

long long firstFanMaxSpeed(const ThermalReadings& readings) {
    if (readings.fans.empty())
        return 6000;
    const std::optional<double> max = readings.fans.front().max;
    return max ? std::max(1LL, checkedWholeRpm(*max, "maximum")) : 0;
}
