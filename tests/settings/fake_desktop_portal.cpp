// A stand-in for xdg-desktop-portal's Settings interface on a private bus:
// answers Read for org.freedesktop.appearance color-scheme the way Debian 12's
// portal does (the value inside a second variant) and emits SettingChanged
// when a line "set N" arrives on standard input. Prints "ready" once serving.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interfaceName = QStringLiteral("org.freedesktop.portal.Settings");
} // namespace

class FakePortalSettings : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    explicit FakePortalSettings(unsigned scheme) : scheme_(scheme) {}

    void setScheme(unsigned scheme) {
        scheme_ = scheme;
        QDBusMessage signal = QDBusMessage::createSignal(path, interfaceName, "SettingChanged");
        signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
               << QVariant::fromValue(QDBusVariant(scheme_));
        QDBusConnection::sessionBus().send(signal);
    }

public slots:
    QDBusVariant Read(const QString& group, const QString& key) {
        if (group != "org.freedesktop.appearance" || key != "color-scheme") {
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                           QStringLiteral("Requested setting not found"));
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme_)));
    }

private:
    unsigned scheme_;
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const unsigned initial = argc > 1 ? unsigned(std::stoul(argv[1])) : 0;
    FakePortalSettings settings(initial);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(path, &settings, QDBusConnection::ExportAllSlots) ||
        !bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"))) {
        std::fprintf(stderr, "cannot serve on the bus\n");
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);

    // Raw reads, so no line waits in a stream buffer the notifier cannot see.
    std::string pending;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char buffer[256];
        const ssize_t count = ::read(0, buffer, sizeof buffer);
        if (count <= 0) {
            app.quit();
            return;
        }
        pending.append(buffer, std::size_t(count));
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            const std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            if (line.rfind("set ", 0) == 0)
                settings.setScheme(unsigned(std::stoul(line.substr(4))));
        }
    });
    return app.exec();
}

#include "fake_desktop_portal.moc"
