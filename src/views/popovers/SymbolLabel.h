#pragma once

#include <QColor>
#include <QLabel>

/// A named symbol drawn in a colour. Where no icon is known for the name it shows
/// `fallbackGlyph` as text in that colour instead, or hides when there is none.
class SymbolLabel : public QLabel {
    Q_OBJECT
public:
    SymbolLabel(const QString& symbolName, int size, const QString& fallbackGlyph = {},
                QWidget* parent = nullptr);

    void setColor(const QColor& color);
    QString symbolName() const { return symbolName_; }

private:
    QString symbolName_;
    int size_;
    QString fallbackGlyph;
    QColor color_;
};
