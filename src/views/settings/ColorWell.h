#pragma once

#include <QAbstractButton>
#include <QColor>

/// A colour swatch; clicking it opens a colour dialog without opacity, and an
/// accepted choice is announced with colorChosen.
class ColorWell : public QAbstractButton {
    Q_OBJECT
public:
    explicit ColorWell(QWidget* parent = nullptr);

    QColor color() const { return colour; }
    /// Shows `color` without announcing it.
    void setColor(const QColor& color);

    QSize sizeHint() const override;

signals:
    void colorChosen(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openDialog();

    QColor colour;
};
