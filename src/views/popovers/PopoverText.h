#pragma once

#include <QString>

// The texts the popovers show for published readings. Whole numbers are truncated
// toward zero; a value that is not finite counts as 0 so a view never shows garbage.

/// The whole-number part of `value`, 0 when it is not finite or out of range.
long long wholeNumber(double value);

/// A fraction 0...1 as a whole percentage: 0.425 → "42%".
QString percentText(double fraction);

/// A rate in bytes per second with 1024-based units: "1.5 MB/s", "12 KB/s", "512 B/s".
QString popoverRateText(double bytesPerSecond);

/// Degrees as a whole number, "65°C"; "—" when there is no reading (not above 0).
QString temperatureText(double celsius);

/// A fan speed as a whole number followed by " RPM".
QString rpmText(double rpm);

/// The main popover's footer: "Updating every " + the interval as a whole number + "s".
QString updateIntervalText(double seconds);
