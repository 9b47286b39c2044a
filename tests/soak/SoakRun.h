#pragma once

#include "GrowthCheck.h"
#include "ProcessFigures.h"
#include "app/SensorType.h"

#include <QEventLoop>
#include <QObject>
#include <QTimer>

class AppSettings;
class SystemMonitor;

struct SoakOptions {
    int ticks = 20000;
    /// Figures taken here are the baseline: by then every cache has filled.
    int baselineTick = 1000;
    SensorType popover = SensorType::cpu;
    GrowthTolerance tolerance;
};

/// Drives sampling ticks back to back with every tray item enabled and one detail
/// popover open, and compares the process's figures at the baseline tick and at the end.
class SoakRun : public QObject {
    Q_OBJECT
public:
    SoakRun(SystemMonitor& monitor, AppSettings& settings, SoakOptions options,
            QObject* parent = nullptr);

    /// Runs every tick; prints the figures at the baseline and at the end, and what
    /// went wrong. Returns the process exit code: 0 when nothing grew.
    int run();

private:
    void enableEveryItem();
    bool runOneTick();
    void settle();
    ProcessFigures settledFigures(int tick, double seconds);
    bool stillShowing() const;

    SystemMonitor& monitor;
    AppSettings& settings;
    SoakOptions options;
    QEventLoop tickLoop;
    QTimer tickDeadline;
    bool sampled = false;
};
