#include "PopoverWindow.h"

#include "PopoverPlacement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

PopoverWindow::PopoverWindow(QWidget* content, int width, QWidget* parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    setFixedWidth(width);
}

void PopoverWindow::showUnder(const QRect& itemGeometry) {
    adjustSize();
    const QPoint cursor = QCursor::pos();
    QScreen* screen =
        QGuiApplication::screenAt(itemGeometry.isValid() ? itemGeometry.center() : cursor);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    const bool cursorKnown = !cursor.isNull() || itemGeometry.isValid();
    move(popoverPosition(itemGeometry, cursorKnown ? std::optional(cursor) : std::nullopt,
                         available, sizeHint()));
    show();
    raise();
    activateWindow();
}

void PopoverWindow::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    emit closed();
}
