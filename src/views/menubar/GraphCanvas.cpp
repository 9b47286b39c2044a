#include "GraphCanvas.h"

#include <cmath>

namespace {

// Far beyond any tray or menu bar picture; keeps a garbage size from asking for gigabytes.
constexpr double largestSide = 4096.0;

bool drawableSide(double pixels) {
    return std::isfinite(pixels) && pixels > 0.0 && pixels <= largestSide;
}

} // namespace

QImage graphCanvas(double width, double height, qreal devicePixelRatio) {
    if (!(devicePixelRatio > 0.0))
        return {};
    const double pixelWidth = std::ceil(width * devicePixelRatio);
    const double pixelHeight = std::ceil(height * devicePixelRatio);
    if (!drawableSide(pixelWidth) || !drawableSide(pixelHeight))
        return {};
    QImage image(static_cast<int>(pixelWidth), static_cast<int>(pixelHeight),
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}
