#include "SingleInstance.h"

#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>

#include <unistd.h>

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {
    connect(&server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* peer = server.nextPendingConnection()) {
            connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
            connect(peer, &QLocalSocket::readyRead, this, [this, peer] {
                if (peer->readAll().contains("show"))
                    emit showRequested();
                peer->disconnectFromServer();
            });
        }
    });
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
    {
        QLocalSocket other;
        other.connectToServer(path);
        if (other.waitForConnected(500)) {
            other.write("show\n");
            other.waitForBytesWritten(500);
            other.waitForDisconnected(500);
            return false;
        }
    }
    // Nobody answered: a socket file left by a crashed instance is stale.
    QLocalServer::removeServer(path);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    return server.listen(path);
}
