#include "TrayHostWatch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QSystemTrayIcon>

namespace {
constexpr int pollMilliseconds = 250;
constexpr int patienceMilliseconds = 10000;
} // namespace

TrayHostWatch::TrayHostWatch(QObject* parent) : QObject(parent) {
    poll.setInterval(pollMilliseconds);
    connect(&poll, &QTimer::timeout, this, [this] {
        if (trayHostExists()) {
            poll.stop();
            emit trayHostAppeared();
            return;
        }
        waitedMilliseconds += pollMilliseconds;
        if (waitedMilliseconds == patienceMilliseconds)
            emit stillNoTrayHost();
    });
}

bool TrayHostWatch::trayHostExists() {
    if (QSystemTrayIcon::isSystemTrayAvailable())
        return true;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface() &&
           bus.interface()->isServiceRegistered(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

void TrayHostWatch::start() {
    if (trayHostExists()) {
        QMetaObject::invokeMethod(this, &TrayHostWatch::trayHostAppeared, Qt::QueuedConnection);
        return;
    }
    poll.start();
}
