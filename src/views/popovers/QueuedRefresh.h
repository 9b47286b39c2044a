#pragma once

#include <QObject>

#include <functional>

/// Turns any number of change notices into one re-read on the main queue.
///
/// The monitor and the settings announce a change before making it, so a view
/// must never read inside the notice; it asks for a refresh instead, and all
/// notices that arrive before the queued call runs share that one call.
class QueuedRefresh : public QObject {
    Q_OBJECT
public:
    QueuedRefresh(std::function<void()> refresh, QObject* parent);

    /// Schedules a refresh whenever `signal` of `source` fires.
    template <typename Source, typename Signal> void watch(Source* source, Signal signal) {
        connect(source, signal, this, &QueuedRefresh::schedule);
    }

    /// Queues the refresh unless one is already pending.
    void schedule();
    bool isPending() const { return pending; }

private:
    std::function<void()> refresh;
    bool pending = false;
};
