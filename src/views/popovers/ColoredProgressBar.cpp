#include "ColoredProgressBar.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

ColoredProgressBar::ColoredProgressBar(int height, QWidget* parent) : QWidget(parent) {
    setFixedHeight(height);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ColoredProgressBar::setValue(double value) {
    const double clamped = std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
    if (clamped == value_)
        return;
    value_ = clamped;
    update();
}

void ColoredProgressBar::setColor(const QColor& color) {
    if (color == color_)
        return;
    color_ = color;
    update();
}

QSize ColoredProgressBar::sizeHint() const {
    return {120, height()};
}

void ColoredProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF track(rect());
    const qreal radius = track.height() / 2.0;
    QColor trackColor = palette().color(QPalette::PlaceholderText);
    trackColor.setAlphaF(0.15f);
    painter.setBrush(trackColor);
    painter.drawRoundedRect(track, radius, radius);
    if (value_ <= 0.0)
        return;
    // A sliver narrower than the bar is high would draw a dot, so the fill starts at that width.
    const qreal width = std::max(track.width() * value_, track.height());
    painter.setBrush(color_);
    painter.drawRoundedRect(QRectF(track.left(), track.top(), width, track.height()), radius,
                            radius);
}
