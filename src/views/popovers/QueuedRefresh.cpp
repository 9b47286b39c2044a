#include "QueuedRefresh.h"

QueuedRefresh::QueuedRefresh(std::function<void()> refresh, QObject* parent)
    : QObject(parent), refresh(std::move(refresh)) {}

void QueuedRefresh::schedule() {
    if (pending)
        return;
    pending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            pending = false;
            refresh();
        },
        Qt::QueuedConnection);
}
