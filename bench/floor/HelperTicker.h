#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <sys/types.h>

class QSocketNotifier;

// Runs `helper --all` on a fixed period, reads its answer and throws it away.
class HelperTicker : public QObject {
    Q_OBJECT
public:
    HelperTicker(QString helperPath, int periodMilliseconds, QObject* parent = nullptr);
    ~HelperTicker() override;

    void start();

private:
    void spawnHelper();
    void readAnswer();
    void finishRun();

    QString helperPath;
    QTimer timer;
    pid_t child = -1;
    int answerFd = -1;
    std::unique_ptr<QSocketNotifier> answerNotifier;
};
