#pragma once

#include <QColor>
#include <QIcon>
#include <QPainterPath>
#include <QPixmap>

#include <string_view>

/// Icons for the symbol names the views use ("cpu", "memorychip", "fan", ...),
/// drawn from the bundled Lucide set in one colour. An unknown name gives a null icon.
QIcon symbolIcon(std::string_view symbolName, const QColor& color);
/// The icon's lines in its 24 × 24 box, to be stroked 2 units wide; empty for an unknown name.
QPainterPath symbolLines(std::string_view symbolName);
QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio = 1.0);

/// The same with a thin dark outline under the strokes, for a panel of any colour.
QPixmap outlinedSymbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                             qreal devicePixelRatio = 1.0);

/// The application symbol for the tray: white strokes with a thin dark outline,
/// so it reads on dark and light panels alike.
QIcon applicationTraySymbol();
