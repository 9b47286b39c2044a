#pragma once

#include <QColor>

/// WCAG's contrast ratio of two opaque colours, from 1 (the same) to 21 (black on white).
double contrastRatio(const QColor& a, const QColor& b);

/// `text` as it shows on `background` (its alpha blended in), darkened on a light
/// background or lightened on a dark one just enough to reach `ratio` (WCAG AA for body
/// text: 4.5), keeping its hue. Colours that already reach it come back as they are.
QColor readableOn(const QColor& text, const QColor& background, double ratio = 4.5);

/// How far apart two opaque colours look: CIE76's ΔE in Lab, 0 for the same colour,
/// about 2 for a just-noticeable step, above 100 for opposites.
double colourDifference(const QColor& a, const QColor& b);
