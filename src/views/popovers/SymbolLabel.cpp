#include "SymbolLabel.h"

#include "PopoverStyle.h"
#include "tray/Symbols.h"

SymbolLabel::SymbolLabel(const QString& symbolName, int size, const QString& fallbackGlyph,
                         QWidget* parent)
    : QLabel(parent), symbolName_(symbolName), size_(size), fallbackGlyph(fallbackGlyph) {
    setAlignment(Qt::AlignCenter);
    setMinimumWidth(size);
    setColor(palette().color(QPalette::WindowText));
}

void SymbolLabel::setColor(const QColor& color) {
    if (color == color_)
        return;
    color_ = color;
    const QPixmap icon = symbolPixmap(symbolName_.toStdString(), color, size_, devicePixelRatioF());
    if (!icon.isNull()) {
        setPixmap(icon);
    } else {
        setText(fallbackGlyph);
        PopoverStyle::setTextColor(this, color);
    }
    // Showing a widget without a parent would open it as a window of its own.
    const bool empty = icon.isNull() && fallbackGlyph.isEmpty();
    if (empty)
        hide();
    else if (parentWidget())
        show();
}
