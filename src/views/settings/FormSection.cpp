#include "FormSection.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {
constexpr qreal cardRadius = 8;
constexpr int rowMinimumHeight = 30;

QColor faded(QColor colour, float alpha) {
    colour.setAlphaF(alpha);
    return colour;
}
} // namespace

FormSection::FormSection(const QString& title, QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);

    auto* heading = new QLabel(title, this);
    QFont headingFont = heading->font();
    headingFont.setWeight(QFont::DemiBold);
    heading->setFont(headingFont);
    heading->setContentsMargins(4, 0, 0, 0);
    column->addWidget(heading);

    card = new QWidget(this);
    rows = new QVBoxLayout(card);
    rows->setContentsMargins(0, 2, 0, 2);
    rows->setSpacing(0);
    column->addWidget(card);

    footnotes = new QVBoxLayout;
    footnotes->setContentsMargins(4, 0, 4, 0);
    footnotes->setSpacing(2);
    column->addLayout(footnotes);
}

QWidget* FormSection::addRow(const QString& label, QWidget* control, int labelWidth) {
    auto* row = new QWidget(card);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(12, 4, 12, 4);
    line->setSpacing(10);
    auto* text = new QLabel(label, row);
    text->setBuddy(control);
    // What a screen reader says for the control: its row's label, unless it has its own.
    if (control->accessibleName().isEmpty())
        control->setAccessibleName(label);
    if (labelWidth > 0)
        text->setMinimumWidth(labelWidth);
    line->addWidget(text);
    if (control->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) {
        line->addWidget(control, 1);
    } else {
        line->addStretch(1);
        line->addWidget(control);
    }
    // A strut, not a minimum height on the row: that would let the layout squeeze
    // taller contents below their own size.
    line->addStrut(rowMinimumHeight - 8);
    rows->addWidget(row);
    return row;
}

QWidget* FormSection::addRow(QWidget* content) {
    auto* row = new QWidget(card);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(12, 6, 12, 6);
    line->addWidget(content);
    line->addStrut(rowMinimumHeight - 12);
    rows->addWidget(row);
    return row;
}

QLabel* FormSection::addFootnote(const QString& text) {
    auto* note = new QLabel(text, this);
    note->setWordWrap(true);
    QFont small = note->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    note->setFont(small);
    note->setForegroundRole(QPalette::PlaceholderText);
    footnotes->addWidget(note);
    return note;
}

void FormSection::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette().color(QPalette::WindowText);
    const QRectF cardRect = QRectF(card->geometry()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(faded(ink, 0.12f), 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(cardRect, cardRadius, cardRadius);

    // Hairlines between visible rows, inset like the row contents.
    std::vector<const QWidget*> shown;
    for (int i = 0; i < rows->count(); ++i)
        if (const QWidget* row = rows->itemAt(i)->widget(); row && !row->isHidden())
            shown.push_back(row);
    painter.setPen(QPen(faded(ink, 0.1f), 1));
    for (std::size_t i = 0; i + 1 < shown.size(); ++i) {
        const qreal y = card->y() + shown[i]->geometry().bottom() + 1;
        painter.drawLine(QPointF(card->x() + 12, y), QPointF(card->x() + card->width() - 12, y));
    }
}
