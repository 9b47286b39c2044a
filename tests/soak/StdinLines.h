#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <string>

/// Hands out standard input line by line as it arrives, without blocking the event loop.
class StdinLines : public QObject {
    Q_OBJECT
public:
    explicit StdinLines(QObject* parent = nullptr);

signals:
    void lineReceived(const std::string& line);
    /// Standard input reached its end or failed.
    void closed();

private:
    void readAvailable();

    QSocketNotifier notifier;
    std::string pending;
};
