#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

/// One Vorlune per user and display: the first instance listens on a local
/// socket in XDG_RUNTIME_DIR named after the display; a later one asks it to
/// open its main popover and exits.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(QObject* parent = nullptr);

    /// True when this process is the one instance; false when another one
    /// answered (it has been asked to show itself).
    bool claim();
    static QString socketPath();

signals:
    void showRequested();

private:
    QLocalServer server;
};
