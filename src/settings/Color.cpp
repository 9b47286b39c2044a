#include "Color.h"

#include <QRgba64>

Color colorFromQColor(const QColor& colour) {
    // The 16-bit channels divided in double give exactly v / 255.0 for an 8-bit
    // value v, so a picked colour survives the truncation in hexFromColor.
    const QRgba64 rgba = colour.toRgb().rgba64();
    constexpr double full = 65535.0;
    return Color{{rgba.red() / full, rgba.green() / full, rgba.blue() / full, rgba.alpha() / full}};
}

QColor toQColor(const Color& colour) {
    const auto& c = colour.components;
    switch (c.size()) {
    case 0:
        return QColor::fromRgbF(1.0f, 1.0f, 1.0f);
    case 1:
        return QColor::fromRgbF(float(c[0]), float(c[0]), float(c[0]));
    case 2:
        return QColor::fromRgbF(float(c[0]), float(c[0]), float(c[0]), float(c[1]));
    case 3:
        return QColor::fromRgbF(float(c[0]), float(c[1]), float(c[2]));
    default:
        return QColor::fromRgbF(float(c[0]), float(c[1]), float(c[2]), float(c[3]));
    }
}
