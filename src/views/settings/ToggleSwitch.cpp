#include "ToggleSwitch.h"

#include <QPainter>

namespace {
constexpr int trackWidth = 34;
constexpr int trackHeight = 20;
constexpr int knobInset = 2;
} // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    return {trackWidth + 2, trackHeight + 2};
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track(1, (height() - trackHeight) / 2.0, trackWidth, trackHeight);
    const qreal radius = trackHeight / 2.0;

    const QPalette& colours = palette();
    // The off track is the text colour faded, so it reads on light and dark cards alike.
    QColor fill = colours.color(QPalette::WindowText);
    fill.setAlphaF(0.22f);
    if (isChecked())
        fill = colours.color(QPalette::Highlight);
    if (!isEnabled())
        fill.setAlphaF(0.4f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, radius, radius);

    const qreal knobSize = trackHeight - 2 * knobInset;
    const qreal knobX =
        isChecked() ? track.right() - knobInset - knobSize : track.left() + knobInset;
    const QRectF knob(knobX, track.top() + knobInset, knobSize, knobSize);
    painter.setPen(QPen(QColor(0, 0, 0, 40), 0.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);

    if (hasFocus()) {
        painter.setPen(QPen(colours.color(QPalette::Highlight), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
    }
}
