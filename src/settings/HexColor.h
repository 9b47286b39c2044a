#pragma once

#include "Color.h"

#include <QString>
#include <QStringView>

/// Parses a six-digit colour string into an opaque sRGB colour {red, green, blue, 1.0}.
/// Non-alphanumeric characters are trimmed from both ends first ("#FF9500;" is FF9500).
/// Any length other than six characters gives white; six characters that are not all
/// hex give whatever hex prefix they have ("FFZZZZ" is 0x0000FF, "ZZZZZZ" is black).
/// Never fails.
Color colorFromHex(QStringView text);

/// Formats a colour as "%02X%02X%02X" of its first components times 255, truncated.
/// One component gives red only; two give red and green (so grey with alpha maps alpha
/// to green); no components count as white. A value over 255 gives three digits.
/// A non-finite or out-of-range product is a fatal error.
QString hexFromColor(const Color& colour);
