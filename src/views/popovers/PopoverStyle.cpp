#include "PopoverStyle.h"

#include "PopoverText.h"
#include "settings/Contrast.h"
#include "views/menubar/MenuBarColor.h"

#include <QFrame>
#include <QLabel>

namespace PopoverStyle {

QFont font(const QFont& base, qreal pointSize, QFont::Weight weight) {
    QFont result = base;
    result.setPointSizeF(pointSize);
    result.setWeight(weight);
    return result;
}

QLabel* label(const QString& text, qreal pointSize, QFont::Weight weight, QWidget* parent) {
    auto* result = new QLabel(text, parent);
    result->setFont(font(result->font(), pointSize, weight));
    return result;
}

QLabel* secondaryLabel(const QString& text, QWidget* parent) {
    auto* result = label(text, 9, QFont::Normal, parent);
    result->setForegroundRole(QPalette::PlaceholderText);
    return result;
}

QLabel* caption(const QString& text, QWidget* parent) {
    auto* result = label(text, 9, QFont::DemiBold, parent);
    result->setForegroundRole(QPalette::PlaceholderText);
    return result;
}

void setTextColor(QLabel* label, const QColor& colour) {
    QPalette palette = label->palette();
    // Accent colours are chosen for graphs; as text they are made readable (WCAG AA) on
    // the popover's background, light or dark.
    palette.setColor(label->foregroundRole(),
                     readableOn(colour, label->window()->palette().color(QPalette::Window)));
    label->setPalette(palette);
}

void setFanReading(QLabel* label, bool hasFans, double rpm, const QColor& accent) {
    label->setText(hasFans ? rpmText(rpm) : QStringLiteral("No fans found"));
    setTextColor(label,
                 hasFans ? accent : label->window()->palette().color(QPalette::PlaceholderText));
}

void setTemperatureColor(QLabel* label, double celsius, const QColor& accent) {
    setTextColor(label, celsius > 0.0
                            ? temperatureColor(celsius, accent)
                            : label->window()->palette().color(QPalette::PlaceholderText));
}

QColor textColor(const QLabel* label) {
    return label->palette().color(label->foregroundRole());
}

QFrame* divider(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    line->setFixedHeight(1);
    return line;
}

} // namespace PopoverStyle
