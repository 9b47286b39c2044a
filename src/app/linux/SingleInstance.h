#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

#include <sys/un.h>

/// One Vorlune per user and display: the first instance listens on a Unix socket in
/// XDG_RUNTIME_DIR named after the display; a later one connects, which asks the first
/// to open its main popover, and exits. Plain sockets rather than QLocalServer, so the
/// app does not load QtNetwork (and the Kerberos libraries behind it) for one connection.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True when this process is the one instance (or no socket could be made, so it
    /// runs alone); false when another one answered and has been asked to show itself.
    bool claim();
    static QString socketPath();

signals:
    void showRequested();

private:
    static bool anotherAnswers(const sockaddr_un& address);
    /// Listens at the socket; true also when no socket can be made (this one runs alone).
    bool listenAt(const QByteArray& encoded, const sockaddr_un& address, const QString& path);
    void acceptPending();

    int listener = -1;
    QString boundPath;
    std::unique_ptr<QSocketNotifier> notifier;
};
