#include "RingGauge.h"

#include "GraphCanvas.h"
#include "MenuBarColor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace {

void paintTrack(QPainter& painter, const QRectF& circle, qreal lineWidth) {
    QColor track = MenuBarColors::gaugeTrack;
    track.setAlphaF(0.3f);
    painter.setPen(QPen(track, lineWidth));
    painter.drawEllipse(circle);
}

// The track is the same at every tick: drawn once per size and place in the pixel grid,
// then copied. On a transparent picture, where gauges are drawn, the copy's pixels are
// exactly those drawing it in place gives.
bool paintCachedTrack(QPainter& painter, const QRectF& circle, qreal lineWidth) {
    const QTransform device = painter.deviceTransform();
    // Copied pixel for pixel only without a device pixel ratio (which resetting the
    // transform keeps); scaled copies would not match.
    if (device.type() > QTransform::TxScale || device.m11() != device.m22() ||
        !(device.m11() > 0.0) || painter.opacity() != 1.0 || !painter.device() ||
        painter.device()->devicePixelRatioF() != 1.0)
        return false;
    const qreal scale = device.m11();
    const QRectF onDevice = device.mapRect(circle);
    const QRect cell =
        onDevice
            .adjusted(-lineWidth * scale, -lineWidth * scale, lineWidth * scale, lineWidth * scale)
            .toAlignedRect();
    // Sizes and offsets within a pixel, in 1/64ths: finer than antialiasing can show.
    auto sixtyFourths = [](qreal value) { return qRound64(value * 64.0); };
    const auto key =
        std::tuple{sixtyFourths(onDevice.x() - cell.x()), sixtyFourths(onDevice.y() - cell.y()),
                   sixtyFourths(onDevice.width()), sixtyFourths(onDevice.height()),
                   sixtyFourths(lineWidth * scale)};
    static std::map<decltype(key), QImage> tracks;
    auto found = tracks.find(key);
    if (found == tracks.end()) {
        if (tracks.size() >= 16)
            tracks.clear();
        QImage image(cell.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter trackPainter(&image);
        trackPainter.setRenderHint(QPainter::Antialiasing);
        trackPainter.setBrush(Qt::NoBrush);
        paintTrack(trackPainter, onDevice.translated(-cell.topLeft()), lineWidth * scale);
        trackPainter.end();
        found = tracks.emplace(key, image).first;
    }
    painter.save();
    painter.resetTransform();
    painter.drawImage(cell.topLeft(), found->second);
    painter.restore();
    return true;
}

} // namespace

void paintRingGauge(QPainter& painter, const QRectF& square, double fraction, const QColor& colour,
                    qreal lineWidth) {
    const double side = std::min(square.width(), square.height());
    const double radius = (side - lineWidth) / 2.0;
    if (!(radius > 0.0))
        return;
    const QPointF centre = square.center();
    const QRectF circle(centre.x() - radius, centre.y() - radius, 2.0 * radius, 2.0 * radius);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    if (!paintCachedTrack(painter, circle, lineWidth))
        paintTrack(painter, circle, lineWidth);

    // NaN fails the comparison and stays empty, as does anything not above zero.
    const double clamped = std::min(fraction, 1.0);
    if (clamped > 0.0) {
        QPainterPath arc;
        arc.arcMoveTo(circle, 90.0);
        arc.arcTo(circle, 90.0, -360.0 * clamped);
        painter.setPen(QPen(colour, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(arc);
    }
    painter.restore();
}

QImage ringGaugeImage(double fraction, double size, const QColor& colour, qreal devicePixelRatio) {
    QImage image = graphCanvas(size, size, devicePixelRatio);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    paintRingGauge(painter, QRectF(0.0, 0.0, size, size), fraction, colour, 2.0);
    return image;
}
