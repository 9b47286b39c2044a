#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QFrame;
class QLabel;
class QWidget;

// The shared look of the popovers: fonts, the status colours, and small label helpers.
// Text colours come from the palette so light and dark appearances need nothing here.
namespace PopoverStyle {

inline const QColor green{0x34, 0xC7, 0x59};

/// `base` at `pointSize` and `weight`.
QFont font(const QFont& base, qreal pointSize, QFont::Weight weight = QFont::Normal);

/// A label in the palette's primary text colour.
QLabel* label(const QString& text, qreal pointSize, QFont::Weight weight, QWidget* parent);
/// A small label in the secondary (placeholder) text colour.
QLabel* secondaryLabel(const QString& text, QWidget* parent);
/// A small heading above a graph or list ("History", "Storage Map").
QLabel* caption(const QString& text, QWidget* parent);

/// Draws `label`'s text in `colour` instead of the palette's text colour.
void setTextColor(QLabel* label, const QColor& colour);
/// The colour `label` currently draws its text in.
QColor textColor(const QLabel* label);

/// A thin horizontal line between sections.
QFrame* divider(QWidget* parent);

} // namespace PopoverStyle
