#include "SingleInstance.h"

#include <QDir>
#include <QFile>

#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

bool toAddress(const QByteArray& path, sockaddr_un& address) {
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    return true;
}

} // namespace

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

SingleInstance::~SingleInstance() {
    notifier.reset();
    if (listener >= 0) {
        ::close(listener);
        QFile::remove(boundPath);
    }
}

QString SingleInstance::socketPath() {
    QString directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (directory.isEmpty() || !QDir(directory).exists())
        directory = QDir::tempPath() + QStringLiteral("/vorlune-%1").arg(::getuid());
    QDir().mkpath(directory);
    QString display = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (display.isEmpty())
        display = qEnvironmentVariable("DISPLAY");
    if (display.isEmpty())
        display = QStringLiteral("none");
    display.replace(QLatin1Char('/'), QLatin1Char('_'));
    return directory + QStringLiteral("/vorlune-%1.socket").arg(display);
}

bool SingleInstance::claim() {
    const QString path = socketPath();
    const QByteArray encoded = QFile::encodeName(path);
    sockaddr_un address;
    if (!toAddress(encoded, address))
        return true;
    // Two starts at once (an autostart entry and a login script, say) must not both become
    // the instance: asking and listening happen under a lock, held for milliseconds.
    const int lock =
        ::open((encoded + ".lock").constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    for (int tries = 0; lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) != 0 && tries < 40; ++tries)
        ::usleep(25'000);
    const bool mine = !anotherAnswers(address) && listenAt(encoded, address, path);
    if (lock >= 0)
        ::close(lock); // which lets the lock go
    return mine;
}

bool SingleInstance::anotherAnswers(const sockaddr_un& address) {
    // A connection is the request: the running instance shows itself for each one.
    const int other = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (other < 0)
        return false;
    // A running instance too busy to take the connection within half a second is taken
    // as gone, rather than keep this start waiting.
    const timeval patience{0, 500'000};
    ::setsockopt(other, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    const bool answered =
        ::connect(other, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(other);
    return answered;
}

bool SingleInstance::listenAt(const QByteArray& encoded, const sockaddr_un& address,
                              const QString& path) {
    // Nobody answered: a socket file left by a crashed instance is stale.
    ::unlink(encoded.constData());
    listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener < 0)
        return true; // no socket: this one runs alone
    // Only this user may connect: the socket is made with no access for anyone else.
    const mode_t previous = ::umask(0077);
    const bool bound =
        ::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::umask(previous);
    if (!bound || ::listen(listener, 4) != 0) {
        ::close(listener);
        listener = -1;
        return true;
    }
    boundPath = path;
    notifier = std::make_unique<QSocketNotifier>(listener, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, &SingleInstance::acceptPending);
    return true;
}

void SingleInstance::acceptPending() {
    bool requested = false;
    for (int peer; (peer = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        ::close(peer);
        requested = true;
    }
    if (requested)
        emit showRequested();
}
