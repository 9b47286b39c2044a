#include "settings/SystemColorScheme.h"

#include "PortalSettingsListener.h"

#include <QAtomicInt>
#include <QDBusConnection>

namespace {

std::optional<bool> isDarkScheme(std::optional<unsigned> scheme) {
    if (!scheme)
        return std::nullopt;
    return *scheme == 1;
}

QString uniqueConnectionName() {
    static QAtomicInt counter;
    return QStringLiteral("vorlune-portal-%1").arg(counter.fetchAndAddRelaxed(1));
}

} // namespace

SystemColorScheme::SystemColorScheme(QObject* parent) : QObject(parent) {
    follow(new PortalSettingsListener(QDBusConnection::sessionBus(), QString(), this));
}

SystemColorScheme::SystemColorScheme(const QString& busAddress, QObject* parent) : QObject(parent) {
    const QString name = uniqueConnectionName();
    QDBusConnection bus = busAddress.isEmpty() ? QDBusConnection(name)
                                               : QDBusConnection::connectToBus(busAddress, name);
    follow(new PortalSettingsListener(bus, name, this));
}

void SystemColorScheme::follow(PortalSettingsListener* listener) {
    prefersDark_ = isDarkScheme(listener->readColorScheme());
    connect(listener, &PortalSettingsListener::colorSchemeChanged, this, [this](unsigned scheme) {
        prefersDark_ = isDarkScheme(scheme);
        emit changed();
    });
}
