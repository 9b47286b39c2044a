#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>

class QPainter;

/// Draws a ring gauge centred in `square`: a grey track at alpha 0.3 and an arc in `colour`
/// with round caps that starts at twelve o'clock and runs clockwise over `fraction` of the
/// circle. Fractions above 1 (infinity included) draw a full ring; 0, negative and NaN
/// draw the track alone.
void paintRingGauge(QPainter& painter, const QRectF& square, double fraction, const QColor& colour,
                    qreal lineWidth);

/// The ring gauge picture of a tray item: `size` × `size` points, line width 2.
/// Null when the size cannot be drawn.
QImage ringGaugeImage(double fraction, double size, const QColor& colour,
                      qreal devicePixelRatio = 1.0);
