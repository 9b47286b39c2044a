#include "ColorWell.h"

#include <QColorDialog>
#include <QPainter>

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openDialog);
}

void ColorWell::setColor(const QColor& color) {
    if (color == colour)
        return;
    colour = color;
    update();
}

QSize ColorWell::sizeHint() const {
    return {44, 22};
}

void ColorWell::openDialog() {
    auto* dialog = new QColorDialog(colour, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::ShowAlphaChannel, false);
    dialog->setWindowTitle(accessibleName());
    connect(dialog, &QColorDialog::colorSelected, this, &ColorWell::colorChosen);
    dialog->open();
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlphaF(hasFocus() ? 0.6f : 0.25f);
    painter.setPen(QPen(outline, 1));
    painter.setBrush(colour);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
}
