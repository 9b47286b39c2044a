#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>

#include <string_view>

/// Icons for the symbol names the views use ("cpu", "memorychip", "fan", ...),
/// drawn from the bundled Lucide set in one colour. An unknown name gives a null icon.
QIcon symbolIcon(std::string_view symbolName, const QColor& color);
QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio = 1.0);

/// The same with a thin dark outline under the strokes, for a panel of any colour.
QPixmap outlinedSymbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                             qreal devicePixelRatio = 1.0);

/// The application symbol for the tray: white strokes with a thin dark outline,
/// so it reads on dark and light panels alike.
QIcon applicationTraySymbol();
