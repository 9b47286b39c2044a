#pragma once

#include <QByteArrayView>
#include <QPainterPath>

/// The lines of a bundled icon, in its 24 × 24 view box, read from the part of SVG the
/// Lucide set is written in: <path d>, <circle>, <rect> with rounded corners and <line>,
/// with moves, lines, cubic curves and arcs. An arc's x-axis rotation is left out (the
/// set has none); whatever else the text holds is skipped.
QPainterPath symbolPath(QByteArrayView svg);
