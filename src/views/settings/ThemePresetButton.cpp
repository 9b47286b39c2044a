#include "ThemePresetButton.h"

#include "ThemePreviewColors.h"

#include <QLinearGradient>
#include <QPainter>

namespace {
constexpr int previewHeight = 26;
constexpr int labelGap = 4;
constexpr qreal previewRadius = 6;
} // namespace

ThemePresetButton::ThemePresetButton(ThemePreset preset, QWidget* parent)
    : QAbstractButton(parent), preset_(preset) {
    const std::string_view label = rawValue(preset);
    setText(QString::fromUtf8(label.data(), qsizetype(label.size())));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ThemePresetButton::setSelected(bool isSelected) {
    if (selected == isSelected)
        return;
    selected = isSelected;
    update();
}

QSize ThemePresetButton::sizeHint() const {
    return {84, previewHeight + labelGap + fontMetrics().height() + 4};
}

QSize ThemePresetButton::minimumSizeHint() const {
    return {64, sizeHint().height()};
}

void ThemePresetButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF preview(2, 2, width() - 4, previewHeight);

    QLinearGradient gradient(preview.topLeft(), preview.topRight());
    const std::vector<QColor> colours = themePreviewColors(preset_);
    for (std::size_t i = 0; i < colours.size(); ++i)
        gradient.setColorAt(colours.size() == 1 ? 0.0 : qreal(i) / qreal(colours.size() - 1),
                            colours[i]);

    // A faint outline keeps the white previews visible on a white card.
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlphaF(isDown() ? 0.45f : 0.18f);
    painter.setPen(QPen(outline, 1));
    painter.setBrush(gradient);
    painter.drawRoundedRect(preview, previewRadius, previewRadius);

    const QColor highlight = palette().color(QPalette::Highlight);
    if (selected || hasFocus()) {
        painter.setPen(QPen(highlight, selected ? 2.5 : 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(preview.adjusted(-1, -1, 1, 1), previewRadius + 1,
                                previewRadius + 1);
    }

    QFont labelFont = font();
    labelFont.setWeight(selected ? QFont::DemiBold : QFont::Normal);
    painter.setFont(labelFont);
    painter.setPen(selected ? highlight : palette().color(QPalette::WindowText));
    const QRectF labelRect(0, preview.bottom() + labelGap, width(), height() - preview.bottom());
    painter.drawText(labelRect, Qt::AlignHCenter | Qt::AlignTop,
                     QFontMetrics(labelFont).elidedText(text(), Qt::ElideRight, width()));
}
