#include "PopoverWindow.h"

#include "PopoverPlacement.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace {
// Room kept between a popover and the screen's edge when its content is taller.
constexpr int screenMargin = 16;
} // namespace

PopoverWindow::PopoverWindow(QWidget* content, int width, QWidget* parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint), content(content) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    // Content taller than the screen scrolls instead of running off it.
    scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    layout->addWidget(scroll);
    setFixedWidth(width);
    // A section turned on or off, fans appearing, a longer list: the popover follows.
    content->installEventFilter(this);
}

void PopoverWindow::showUnder(const QRect& itemGeometry, bool atCursor) {
    const QPoint cursor = QCursor::pos();
    QScreen* screen =
        QGuiApplication::screenAt(itemGeometry.isValid() ? itemGeometry.center() : cursor);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    resize(width(), fittingHeight());
    const bool cursorKnown = atCursor && (!cursor.isNull() || itemGeometry.isValid());
    const bool panelAtBottom = screen && available.bottom() < screen->geometry().bottom();
    move(popoverPosition(itemGeometry, cursorKnown ? std::optional(cursor) : std::nullopt,
                         available, size(), panelAtBottom));
    // Above the item (a bottom panel) the popover keeps its bottom edge as it resizes.
    growsUp = itemGeometry.isValid() && geometry().bottom() <= itemGeometry.top();
    show();
    raise();
    activateWindow();
}

int PopoverWindow::fittingHeight() const {
    const int wanted = content->sizeHint().height() + 2 * frameWidth();
    return std::min(wanted, available.height() - 2 * screenMargin);
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == content && event->type() == QEvent::LayoutRequest && isVisible()) {
        const int height = fittingHeight();
        if (height != this->height()) {
            const int bottom = geometry().bottom();
            resize(width(), height);
            if (growsUp)
                move(x(), bottom - height + 1);
        }
    }
    return QFrame::eventFilter(watched, event);
}

void PopoverWindow::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    emit closed();
}
