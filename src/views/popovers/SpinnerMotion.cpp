#include "SpinnerMotion.h"

#include <algorithm>
#include <cmath>

namespace {

// 2001-01-01T00:00:00Z in seconds since the Unix epoch.
constexpr std::chrono::seconds referenceDate{978307200};

} // namespace

SpinnerInputs spinnerInputs(const std::vector<FanInfo>& fans, double fanSpeed, double fanMaxSpeed) {
    double speed = fanSpeed;
    if (!fans.empty()) {
        double sum = 0.0;
        for (const FanInfo& fan : fans)
            sum += fan.actual;
        speed = sum / static_cast<double>(fans.size());
    }
    if (fanMaxSpeed <= 0) {
        // No maximum to take a share of: the turn follows the speed itself, one turn
        // per 2400 revolutions, between 2 s and 0.3 s.
        const double turn = speed > 0 ? 2400.0 / speed : 2.0;
        return {speed > 0, std::isfinite(turn) ? std::clamp(turn, 0.3, 2.0) : 2.0};
    }
    double load = speed / fanMaxSpeed;
    if (!std::isfinite(load))
        load = 0.0;
    return {speed > 0, std::max(2.0 - 1.7 * load, 0.3)};
}

double spinnerDegreesPerSecond(double duration) {
    return duration > 0.1 ? 360.0 / duration : 3600.0;
}

double spinnerAngle(bool isSpinning, double duration, double secondsSinceReferenceDate) {
    if (!isSpinning)
        return 0.0;
    const double angle =
        std::fmod(spinnerDegreesPerSecond(duration) * secondsSinceReferenceDate, 360.0);
    return angle < 0 ? angle + 360.0 : angle;
}

double secondsSinceReferenceDate(std::chrono::system_clock::time_point time) {
    return std::chrono::duration<double>(time.time_since_epoch() - referenceDate).count();
}
