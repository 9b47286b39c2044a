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

/// Draws `label`'s text in `colour` instead of the palette's text colour, darkened or
/// lightened as far as it takes to be readable on the window's background.
void setTextColor(QLabel* label, const QColor& colour);
/// The colour `label` currently draws its text in.
QColor textColor(const QLabel* label);
/// A fan reading: its speed in `accent`, or "No fans found" in the secondary text colour
/// when the machine reports no fan at all (a fanless laptop is not at 0 RPM).
void setFanReading(QLabel* label, bool hasFans, double rpm, const QColor& accent);
/// A temperature in its level's colour (`accent`, then warm and hot); "no reading" in
/// the secondary text colour, since a missing sensor is no alarm.
void setTemperatureColor(QLabel* label, double celsius, const QColor& accent);

/// A thin horizontal line between sections.
QFrame* divider(QWidget* parent);

} // namespace PopoverStyle
