#include "MonitorSection.h"

#include "PopoverStyle.h"
#include "SymbolLabel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

MonitorSection::MonitorSection(const QString& title, const QString& icon,
                               std::function<void()> onTap, QWidget* parent)
    : QWidget(parent), title_(title), onTap(std::move(onTap)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);

    auto* header = new QHBoxLayout;
    header->setSpacing(6);
    symbol = new SymbolLabel(icon, 14, {}, this);
    header->addWidget(symbol);
    header->addWidget(PopoverStyle::label(title, 10, QFont::DemiBold, this));
    header->addStretch();
    layout->addLayout(header);

    content = new QVBoxLayout;
    content->setSpacing(4);
    layout->addLayout(content);

    setAccessibleName(title);
    if (this->onTap) {
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::StrongFocus);
    }
}

void MonitorSection::setSpokenValue(const QString& value) {
    const QString spoken = title_ + QStringLiteral(", ") + value;
    if (accessibleName() != spoken)
        setAccessibleName(spoken);
}

void MonitorSection::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (onTap && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)) {
        onTap();
        return;
    }
    QWidget::keyPressEvent(event);
}

// A section Tab brought the focus to is drawn as a hovered one, so the keyboard's place is
// visible; the focus a popover opens with is not marked.
void MonitorSection::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    focusShown = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    update();
}

void MonitorSection::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void MonitorSection::setColor(const QColor& color) {
    color_ = color;
    symbol->setColor(color);
}

void MonitorSection::mousePressEvent(QMouseEvent* event) {
    pressed = onTap && event->button() == Qt::LeftButton;
    event->setAccepted(pressed);
}

void MonitorSection::mouseReleaseEvent(QMouseEvent* event) {
    const bool tapped = pressed && event->button() == Qt::LeftButton &&
                        rect().contains(event->position().toPoint());
    pressed = false;
    if (tapped)
        onTap();
}

void MonitorSection::enterEvent(QEnterEvent*) {
    hovered = static_cast<bool>(onTap);
    update();
}

void MonitorSection::leaveEvent(QEvent*) {
    hovered = false;
    update();
}

void MonitorSection::paintEvent(QPaintEvent*) {
    if (!hovered && !(focusShown && hasFocus()))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor highlight = palette().color(QPalette::PlaceholderText);
    highlight.setAlphaF(0.10f);
    painter.setBrush(highlight);
    painter.drawRoundedRect(QRectF(rect()), 6, 6);
}
