#include "ImageProbe.h"

#include <cmath>
#include <cstdlib>

QColor colourAt(const QImage& image, QPointF logical) {
    const qreal ratio = image.devicePixelRatio();
    return image.pixelColor(static_cast<int>(std::floor(logical.x() * ratio)),
                            static_cast<int>(std::floor(logical.y() * ratio)));
}

QRect contentBounds(const QImage& image, int minimumAlpha) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() >= minimumAlpha)
                bounds = bounds.united(QRect(x, y, 1, 1));
    return bounds;
}

bool fullyTransparent(const QImage& image) {
    return contentBounds(image).isEmpty();
}

bool looksLike(const QColor& colour, const QColor& expected, int minimumAlpha, int tolerance) {
    return colour.alpha() >= minimumAlpha && std::abs(colour.red() - expected.red()) <= tolerance &&
           std::abs(colour.green() - expected.green()) <= tolerance &&
           std::abs(colour.blue() - expected.blue()) <= tolerance;
}
