#include "RingGauge.h"

#include "GraphCanvas.h"
#include "MenuBarColor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>

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
    QColor track = MenuBarColors::gaugeTrack;
    track.setAlphaF(0.3f);
    painter.setPen(QPen(track, lineWidth));
    painter.drawEllipse(circle);

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
