#include "Sparkline.h"

#include "GraphCanvas.h"

#include <QPainter>
#include <QPainterPath>

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

    QPainterPath line;
    for (std::size_t i = 0; i < count; ++i) {
        // Values rise from the bottom edge; the painter's y axis points down.
        const QPointF point(rect.left() + dx * static_cast<double>(i),
                            rect.bottom() - (span * shareOfScale(samples[i], scale) + lineWidth));
        if (i == 0)
            line.moveTo(point);
        else
            line.lineTo(point);
    }

    QPainterPath area = line;
    area.lineTo(rect.right(), rect.bottom());
    area.lineTo(rect.left(), rect.bottom());
    area.closeSubpath();
    area.setFillRule(Qt::WindingFill);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = colour;
    fill.setAlphaF(0.3f);
    painter.fillPath(area, fill);
    // Filling the outline covers pixels by their exact area; Qt's thin-pen path would draw
    // a one-pixel line at three quarters strength.
    QPainterPathStroker stroker;
    stroker.setWidth(lineWidth);
    stroker.setCapStyle(Qt::FlatCap);
    stroker.setJoinStyle(Qt::MiterJoin);
    painter.fillPath(stroker.createStroke(line), colour);
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
