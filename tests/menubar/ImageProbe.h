#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>

/// The unpremultiplied colour of the physical pixel under a logical point.
QColor colourAt(const QImage& image, QPointF logical);

/// The smallest rectangle of physical pixels holding every pixel with at least
/// `minimumAlpha`; empty when there is none.
QRect contentBounds(const QImage& image, int minimumAlpha = 1);

/// True when every pixel is fully transparent.
bool fullyTransparent(const QImage& image);

/// True when `colour` is opaque enough and its red, green and blue are within `tolerance`
/// of `expected`.
bool looksLike(const QColor& colour, const QColor& expected, int minimumAlpha = 200,
               int tolerance = 40);
