#pragma once

#include "monitors/ThermalReadings.h"

#include <chrono>
#include <vector>

/// What the fan symbol needs to turn: whether it turns and the seconds per full turn.
struct SpinnerInputs {
    bool isSpinning = false;
    double duration = 2.0;

    bool operator==(const SpinnerInputs&) const = default;
};

/// The speed is the mean `actual` of `fans`, or `fanSpeed` when there are none; the load
/// is that speed over `fanMaxSpeed`, and a turn takes 2.0 - 1.7 x load seconds, never
/// less than 0.3. Without a maximum (not above 0) a turn takes 2400 / speed seconds,
/// from 2.0 down to 0.3.
SpinnerInputs spinnerInputs(const std::vector<FanInfo>& fans, double fanSpeed, double fanMaxSpeed);

/// 360 / duration, capped at ten turns a second (3600) for durations of 0.1 s and less.
double spinnerDegreesPerSecond(double duration);

/// The angle in degrees (0 to below 360) at a moment given in seconds since the
/// reference date: 0 while not spinning.
double spinnerAngle(bool isSpinning, double duration, double secondsSinceReferenceDate);

/// Seconds since 1 January 2001, 00:00 UTC.
double secondsSinceReferenceDate(std::chrono::system_clock::time_point time);
