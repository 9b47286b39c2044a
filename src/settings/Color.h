#pragma once

#include <QColor>
#include <vector>

/// A colour as the list of its components in its own space: 1 value (grey),
/// 2 (grey, alpha), 3 (red, green, blue) or 4 (red, green, blue, alpha),
/// each nominally 0...1. An empty list means the colour has no components.
struct Color {
    std::vector<double> components;

    bool operator==(const Color&) const = default;
};

/// The colour picker's colour as red, green, blue and alpha.
Color colorFromQColor(const QColor& colour);

/// For drawing: grey forms become equal red, green and blue; a missing
/// alpha is opaque; no components gives white.
QColor toQColor(const Color& colour);
