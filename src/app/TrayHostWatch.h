#pragma once

#include <QObject>
#include <QTimer>

/// Waits until the desktop has a tray host: at login the panel may come up
/// after Vorlune, and Qt picks the tray protocol once, when the first icon is made.
class TrayHostWatch : public QObject {
    Q_OBJECT
public:
    explicit TrayHostWatch(QObject* parent = nullptr);
    void start();
    static bool trayHostExists();

signals:
    void trayHostAppeared();
    /// No host after ten seconds; the watch goes on.
    void stillNoTrayHost();

private:
    QTimer poll;
    int waitedMilliseconds = 0;
};
