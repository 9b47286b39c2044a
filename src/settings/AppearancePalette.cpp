#include "AppearancePalette.h"

#include <QColor>

namespace {

QPalette lightPalette() {
    const QColor window(239, 239, 239);
    const QColor text(0, 0, 0);
    const QColor disabledText(190, 190, 190);
    QPalette palette(text, window, Qt::white, QColor(202, 202, 202), QColor(159, 159, 159), text,
                     Qt::white, Qt::white, window);
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(247, 247, 247));
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 220));
    palette.setColor(QPalette::ToolTipText, text);
    // Secondary text at the least contrast WCAG AA allows for body text, 4.5 : 1.
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 156));
    palette.setColor(QPalette::Link, QColor(0, 0, 255));
    palette.setColor(QPalette::LinkVisited, QColor(255, 0, 255));
    palette.setColor(QPalette::Disabled, QPalette::Text, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Base, window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(145, 145, 145));
    return palette;
}

QPalette darkPalette() {
    const QColor window(53, 53, 53);
    const QColor base(42, 42, 42);
    const QColor text(255, 255, 255);
    const QColor disabledText(127, 127, 127);
    const QColor highlight(42, 130, 218);
    QPalette palette(text, window, QColor(80, 80, 80), QColor(20, 20, 20), QColor(35, 35, 35), text,
                     text, base, window);
    palette.setColor(QPalette::AlternateBase, QColor(66, 66, 66));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(255, 255, 255, 142));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Link, highlight);
    palette.setColor(QPalette::LinkVisited, QColor(160, 110, 230));
    palette.setColor(QPalette::Disabled, QPalette::Text, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 80, 80));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabledText);
    return palette;
}

} // namespace

QPalette appearancePalette(bool dark) {
    return dark ? darkPalette() : lightPalette();
}
