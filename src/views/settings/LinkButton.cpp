#include "LinkButton.h"

#include <QPainter>

LinkButton::LinkButton(const QString& text, QWidget* parent) : QAbstractButton(parent) {
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const {
    return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(4, 2);
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont linkFont = font();
    linkFont.setUnderline(hovered || hasFocus());
    painter.setFont(linkFont);
    painter.setPen(palette().color(QPalette::Link));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

void LinkButton::enterEvent(QEnterEvent*) {
    hovered = true;
    update();
}

void LinkButton::leaveEvent(QEvent*) {
    hovered = false;
    update();
}
