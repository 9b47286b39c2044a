#include "DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace {
const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
} // namespace

DesktopNotifications::DesktopNotifications(QObject* parent) : QObject(parent) {
    QDBusConnection::sessionBus().connect(service, path, service, QStringLiteral("ActionInvoked"),
                                          this, SLOT(onActionInvoked(uint, QString)));
}

void DesktopNotifications::show(const QString& summary, const QString& body, bool urgent, int tag) {
    qInfo("Vorlune alert: %s. %s", qPrintable(summary), qPrintable(body));
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    // app name, id to replace, icon, summary, body, actions, hints, timeout (server's own)
    call << QStringLiteral("Vorlune") << uint(0) << QStringLiteral("vorlune") << summary << body
         << QStringList{QStringLiteral("default"), QStringLiteral("Open")}
         << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(uchar(urgent ? 2 : 1))},
                        {QStringLiteral("desktop-entry"), QStringLiteral("vorlune")}}
         << int(-1);
    auto* pending =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, tag](auto* watcher) {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        if (reply.isValid()) {
            tags[reply.value()] = tag;
            return;
        }
        if (!std::exchange(failureLogged, true))
            qWarning("Vorlune: no notification server took the alert (%s); alerts are only "
                     "logged",
                     qPrintable(reply.error().message()));
    });
}

void DesktopNotifications::onActionInvoked(uint id, const QString& action) {
    const auto found = tags.find(id);
    if (found == tags.end() || action != QStringLiteral("default"))
        return;
    const int tag = found->second;
    tags.erase(found);
    emit activated(tag);
}
