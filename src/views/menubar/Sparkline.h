#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>

#include <cstddef>
#include <span>
#include <vector>

class QPainter;

/// The last `count` values of `history`, or all of it when it is shorter.
std::vector<double> lastSamples(std::span<const double> history, std::size_t count);

/// How many samples a sparkline `width` points wide draws: the width as a whole number,
/// one sample per point. Zero for a width that is negative or not finite.
std::size_t sparklineSampleCount(double width);

/// Draws every one of `samples` as a line across `rect`, oldest at the left edge and newest
/// at the right, each value as a share of `scaleMaximum` (at least 0.001), clamped to 0...1
/// (not above 0 or NaN counts as 0), with a margin of `lineWidth` above and below. The area
/// under the line is filled with `colour` at alpha 0.3, the line stroked in `colour`.
/// Fewer than two samples draw nothing.
void paintSparkline(QPainter& painter, const QRectF& rect, std::span<const double> samples,
                    double scaleMaximum, const QColor& colour, qreal lineWidth);

/// The sparkline picture of a tray item: `width` × `height` points, the last `width`
/// samples of `history`, line width 1. Transparent for fewer than two samples; null when
/// the size cannot be drawn.
QImage sparklineImage(std::span<const double> history, double scaleMaximum, const QColor& colour,
                      double width, double height, qreal devicePixelRatio = 1.0);
