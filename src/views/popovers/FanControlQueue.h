#pragma once

#include <functional>

class QObject;
class QThreadPool;
class SystemMonitor;

/// The one queue for fan-control work of `monitor` (installing the helper, starting
/// the daemon, fan commands). It runs one job at a time, in order, so commands reach
/// the daemon in the order the user gave them. The application waits for it before
/// quitting.
QThreadPool& fanControlQueue(SystemMonitor& monitor);

/// Runs `work` on the fan-control queue, then `done` with its result on the main
/// thread, unless `context` has been destroyed by then.
void runFanControlWork(SystemMonitor& monitor, QObject* context, std::function<bool()> work,
                       std::function<void(bool)> done);
