#include "StatusNotifierItemAdaptor.h"

#include "StatusNotifierItem.h"

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(StatusNotifierItem* item)
    : QDBusAbstractAdaptor(item), item(item) {
    // Hosts read every property as soon as the item registers: announce the changes
    // ourselves, so each signal goes out only when its part changed.
    setAutoRelaySignals(false);
}

QString StatusNotifierItemAdaptor::id() const {
    return item->id();
}

QString StatusNotifierItemAdaptor::title() const {
    return item->title();
}

SniPixmaps StatusNotifierItemAdaptor::iconPixmap() const {
    return item->pixmaps();
}

SniToolTip StatusNotifierItemAdaptor::toolTip() const {
    return item->sniToolTip();
}

QString StatusNotifierItemAdaptor::label() const {
    return item->label();
}

QString StatusNotifierItemAdaptor::labelGuide() const {
    return item->labelGuide();
}

void StatusNotifierItemAdaptor::Activate(int x, int y) {
    item->activateAt({x, y});
}

void StatusNotifierItemAdaptor::SecondaryActivate(int x, int y) {
    item->activateAt({x, y});
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y) {
    item->openMenuAt({x, y});
}

void StatusNotifierItemAdaptor::Scroll(int, const QString&) {}
