#pragma once

#include <QColor>

/// WCAG's contrast ratio of two opaque colours, from 1 (the same) to 21 (black on white).
double contrastRatio(const QColor& a, const QColor& b);

/// `text` as it shows on `background` (its alpha blended in), darkened on a light
/// background or lightened on a dark one just enough to reach `ratio` (WCAG AA for body
/// text: 4.5), keeping its hue. Colours that already reach it come back as they are.
QColor readableOn(const QColor& text, const QColor& background, double ratio = 4.5);
