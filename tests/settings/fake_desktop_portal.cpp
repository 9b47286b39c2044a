// A stand-in for xdg-desktop-portal's Settings interface, run under dbus-run-session:
// answers Read of org.freedesktop.appearance color-scheme the way Debian 12's portal
// does (the value inside a second variant), and for each line "N" on standard input
// changes the scheme to N and emits SettingChanged. Prints "ready BUS-ADDRESS" once serving.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>
#include <cstdio>
#include <unistd.h>

class FakePortalSettings : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    unsigned scheme = 0;

    void change(unsigned newScheme) {
        scheme = newScheme;
        QDBusMessage signal = QDBusMessage::createSignal(
            "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged");
        signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
               << QVariant::fromValue(QDBusVariant(scheme));
        QDBusConnection::sessionBus().send(signal);
    }

public slots:
    QDBusVariant Read(const QString& group, const QString& key) {
        if (group != "org.freedesktop.appearance" || key != "color-scheme")
            sendErrorReply("org.freedesktop.portal.Error.NotFound", "Requested setting not found");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)));
    }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    FakePortalSettings settings;
    settings.scheme = argc > 1 ? QByteArray(argv[1]).toUInt() : 0;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject("/org/freedesktop/portal/desktop", &settings,
                            QDBusConnection::ExportAllSlots) ||
        !bus.registerService("org.freedesktop.portal.Desktop"))
        return 1;
    std::printf("ready %s\n", qgetenv("DBUS_SESSION_BUS_ADDRESS").constData());
    std::fflush(stdout);

    // Raw reads, so no line waits in a stream buffer the notifier cannot see.
    QByteArray pending;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char buffer[64];
        const ssize_t count = ::read(0, buffer, sizeof buffer);
        if (count <= 0)
            return app.quit();
        pending.append(buffer, count);
        for (qsizetype end; (end = pending.indexOf('\n')) >= 0; pending.remove(0, end + 1))
            settings.change(pending.left(end).toUInt());
    });
    return app.exec();
}

#include "fake_desktop_portal.moc"
