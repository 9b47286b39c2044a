#pragma once

#include <QImage>

/// A transparent image of `width` × `height` points at `devicePixelRatio`, ready to paint
/// on in points. A size that is not positive and finite, or too large to allocate, gives
/// a null image: there is nothing to draw on.
QImage graphCanvas(double width, double height, qreal devicePixelRatio);
