#include "Contrast.h"

#include <array>
#include <cmath>

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor blended(const QColor& top, const QColor& under) {
    const double a = top.alphaF();
    return QColor::fromRgbF(static_cast<float>(top.redF() * a + under.redF() * (1 - a)),
                            static_cast<float>(top.greenF() * a + under.greenF() * (1 - a)),
                            static_cast<float>(top.blueF() * a + under.blueF() * (1 - a)));
}

// Lab's lightness-like axis of one CIE XYZ component, relative to the D65 white.
double labAxis(double t) {
    return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0;
}

std::array<double, 3> lab(const QColor& colour) {
    const double r = linear(colour.redF()), g = linear(colour.greenF()), b = linear(colour.blueF());
    const double x = labAxis((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.95047);
    const double y = labAxis(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double z = labAxis((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.08883);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

} // namespace

double contrastRatio(const QColor& a, const QColor& b) {
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor readableOn(const QColor& text, const QColor& background, double ratio) {
    QColor shown = blended(text, background);
    if (contrastRatio(shown, background) >= ratio)
        return shown;
    // Towards black on a light background, towards white on a dark one, in steps of
    // lightness small enough not to overshoot by more than a shade.
    const bool darken = luminance(background) > 0.18;
    float hue = 0, saturation = 0, lightness = 0;
    shown.getHslF(&hue, &saturation, &lightness);
    for (int step = 0; step < 100 && contrastRatio(shown, background) < ratio; ++step) {
        lightness = darken ? std::max(0.0f, lightness - 0.01f) : std::min(1.0f, lightness + 0.01f);
        shown = QColor::fromHslF(hue, saturation, lightness);
    }
    return shown;
}

double colourDifference(const QColor& a, const QColor& b) {
    const auto la = lab(a), lb = lab(b);
    return std::hypot(la[0] - lb[0], la[1] - lb[1], la[2] - lb[2]);
}
