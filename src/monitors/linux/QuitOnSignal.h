#pragma once

#include <QObject>

/// Turns SIGTERM, SIGINT and SIGHUP into a normal quit, so the tray items are
/// removed and the fan daemon is stopped as on "Quit". The handler only writes
/// to a pipe; the quit itself runs on the main thread.
class QuitOnSignal : public QObject {
    Q_OBJECT
public:
    explicit QuitOnSignal(QObject* parent = nullptr);
};
