// Checks on a rendered window that a person would otherwise have to spot in the saved
// pictures: text cut off, widgets hanging out of their parent, the wrong appearance.
#pragma once

#include "settings/AppearancePalette.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QWidget>
#include <gtest/gtest.h>

/// Every shown label and button below `root` has room for its text and none draws it in
/// the other appearance's colour; every shown widget lies inside its parent (scrolled
/// pages excepted); every control the keyboard reaches has a name a screen reader says.
inline void expectLaidOut(const QWidget& root, bool dark) {
    const QPalette other = appearancePalette(!dark);
    for (const QWidget* widget : root.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&root) || widget->size().isEmpty())
            continue;
        SCOPED_TRACE(widget->metaObject()->className() +
                     (" " + widget->objectName().toStdString()));
        const QWidget* parent = widget->parentWidget();
        EXPECT_TRUE(qobject_cast<const QAbstractScrollArea*>(parent->parentWidget()) ||
                    parent->rect().contains(widget->geometry()));
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool hasText = label || button;
        EXPECT_TRUE(!(widget->focusPolicy() & Qt::TabFocus) ||
                    !widget->accessibleName().isEmpty() || (button && !button->text().isEmpty()) ||
                    qobject_cast<const QAbstractScrollArea*>(widget) ||
                    widget->objectName().startsWith(QLatin1String("qt_"))) // a control's own part
            << "no accessible name";
        // Room left for the text: height for wrapped labels, width for the rest.
        const int room = label && label->wordWrap()
                             ? label->height() - label->heightForWidth(label->width())
                             : widget->width() - (hasText ? widget->sizeHint().width() : 0);
        EXPECT_GE(room, 0) << "text cut off";
        const QPalette::ColorRole role = widget->foregroundRole();
        EXPECT_TRUE(!label || label->text().isEmpty() ||
                    label->palette().color(role) != other.color(role));
    }
}

/// Saves `window` as <build>/screenshots/<name>.png for people to look at, checks it is
/// drawn on the appearance's background and laid out, and returns the picture.
inline QImage checkScreenshot(QWidget& window, const QString& name, bool dark) {
    const QString path = QStringLiteral(VORLUNE_BINARY_DIR "/screenshots/") + name + ".png";
    QDir().mkpath(QFileInfo(path).path());
    const QImage image = window.grab().toImage();
    EXPECT_TRUE(image.save(path)) << path.toStdString();
    EXPECT_EQ(image.pixelColor(2, image.height() - 3),
              appearancePalette(dark).color(QPalette::Window));
    expectLaidOut(window, dark);
    return image;
}
