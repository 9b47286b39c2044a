#include "Sparkline.h"

#include "GraphCanvas.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QVarLengthArray>

#include <algorithm>
#include <cmath>

namespace {

double shareOfScale(double value, double scale) {
    if (!(value > 0.0))
        return 0.0;
    return std::min(value / scale, 1.0);
}

} // namespace

std::vector<double> lastSamples(std::span<const double> history, std::size_t count) {
    const auto taken = std::min(count, history.size());
    return {history.end() - static_cast<std::ptrdiff_t>(taken), history.end()};
}

std::size_t sparklineSampleCount(double width) {
    if (!std::isfinite(width) || width < 0.0)
        return 0;
    return static_cast<std::size_t>(width);
}

void paintSparkline(QPainter& painter, const QRectF& rect, std::span<const double> samples,
                    double scaleMaximum, const QColor& colour, qreal lineWidth) {
    const auto count = samples.size();
    if (count < 2)
        return;
    const double scale = std::max(scaleMaximum, 0.001);
    const double dx = rect.width() / static_cast<double>(count - 1);
    const double span = std::max(rect.height() - 2.0 * lineWidth, 0.0);

    // The line's points, then the two bottom corners that close the area under it; on the
    // stack for the usual graph widths.
    QVarLengthArray<QPointF, 256> points(static_cast<qsizetype>(count));
    for (std::size_t i = 0; i < count; ++i) {
        // Values rise from the bottom edge; the painter's y axis points down.
        points[static_cast<qsizetype>(i)] =
            QPointF(rect.left() + dx * static_cast<double>(i),
                    rect.bottom() - (span * shareOfScale(samples[i], scale) + lineWidth));
    }
    points.append(rect.bottomRight());
    points.append(rect.bottomLeft());

    painter.save();
    // The area's only slanted edge lies under the line, so it is filled without smoothing:
    // a row or two of spans per pixel row rather than many, cheaper to fill and small
    // enough that Qt keeps it on this thread instead of sharing it out to its pool.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Qt::NoPen);
    QColor fill = colour;
    fill.setAlphaF(0.3f);
    painter.setBrush(fill);
    painter.drawPolygon(points.constData(), static_cast<int>(points.size()), Qt::WindingFill);
    painter.setRenderHint(QPainter::Antialiasing);
    // A pen of one device pixel or less takes Qt's thin-line path, which draws the line at
    // three quarters strength; its outline filled covers pixels by their exact area. Below
    // one pixel (icons under 22 px) that outline is made here; otherwise the pen makes it,
    // a hair wider than one pixel so it does.
    const qreal deviceWidth =
        lineWidth * std::sqrt(std::abs(painter.deviceTransform().determinant()));
    if (deviceWidth < 1.0) {
        QPainterPath line;
        line.addPolygon(QPolygonF(QList<QPointF>(points.begin(), points.begin() + count)));
        QPainterPathStroker stroker;
        stroker.setWidth(lineWidth);
        stroker.setCapStyle(Qt::FlatCap);
        stroker.setJoinStyle(Qt::MiterJoin);
        painter.fillPath(stroker.createStroke(line), colour);
    } else {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colour, std::nextafter(lineWidth, 2.0 * lineWidth), Qt::SolidLine,
                            Qt::FlatCap, Qt::BevelJoin));
        painter.drawPolyline(points.constData(), static_cast<int>(count));
    }
    painter.restore();
}

QImage sparklineImage(std::span<const double> history, double scaleMaximum, const QColor& colour,
                      double width, double height, qreal devicePixelRatio) {
    QImage image = graphCanvas(width, height, devicePixelRatio);
    if (image.isNull())
        return image;
    const auto samples = lastSamples(history, sparklineSampleCount(width));
    if (samples.size() < 2)
        return image;
    QPainter painter(&image);
    paintSparkline(painter, QRectF(0.0, 0.0, width, height), samples, scaleMaximum, colour, 1.0);
    return image;
}
