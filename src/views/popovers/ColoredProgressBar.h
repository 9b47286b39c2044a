#pragma once

#include <QColor>
#include <QWidget>

/// A horizontal bar gauge: a rounded track filled from the left to `value` (0...1).
class ColoredProgressBar : public QWidget {
    Q_OBJECT
public:
    ColoredProgressBar(int height, QWidget* parent = nullptr);

    /// Clamped to 0...1; a value that is not a number shows an empty bar.
    void setValue(double value);
    void setColor(const QColor& color);

    double value() const { return value_; }
    QColor color() const { return color_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double value_ = 0.0;
    QColor color_;
};
