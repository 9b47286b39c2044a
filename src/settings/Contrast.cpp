#include "Contrast.h"

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
