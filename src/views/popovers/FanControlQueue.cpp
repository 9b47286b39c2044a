#include "FanControlQueue.h"

#include "monitors/SystemMonitor.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace {

const char* const queueName = "fanControlQueue";

} // namespace

QThreadPool& fanControlQueue(SystemMonitor& monitor) {
    if (auto* queue =
            monitor.findChild<QThreadPool*>(QLatin1String(queueName), Qt::FindDirectChildrenOnly))
        return *queue;
    auto* queue = new QThreadPool(&monitor);
    queue->setObjectName(QLatin1String(queueName));
    queue->setMaxThreadCount(1);
    // The user is waiting for what runs here.
    queue->setThreadPriority(QThread::HighPriority);
    // Jobs use the monitor's thermal monitor, which is gone before the queue would be.
    if (auto* application = QCoreApplication::instance())
        QObject::connect(application, &QCoreApplication::aboutToQuit, queue,
                         [queue] { queue->waitForDone(); });
    return *queue;
}

void runFanControlWork(SystemMonitor& monitor, QObject* context, std::function<bool()> work,
                       std::function<void(bool)> done) {
    QPointer<QObject> guard(context);
    fanControlQueue(monitor).start([guard, work = std::move(work), done = std::move(done)] {
        const bool result = work();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, done, result] {
                if (guard)
                    done(result);
            },
            Qt::QueuedConnection);
    });
}
