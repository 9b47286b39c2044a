#include "SoakRun.h"

#include "app/StatusBarManager.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace {

// A tick takes milliseconds; one that takes this long has hung.
constexpr int tickLimitMilliseconds = 10000;
// Flipping the network layout now and then makes the separate and combined network
// items come and go. Both figures are taken with the same layout: the flips fall
// half-way between multiples of flipPeriod.
constexpr int flipPeriod = 500;

int flipsUpTo(int tick) {
    return (tick + flipPeriod / 2) / flipPeriod;
}

} // namespace

SoakRun::SoakRun(SystemMonitor& monitor, AppSettings& settings, SoakOptions options,
                 QObject* parent)
    : QObject(parent), monitor(monitor), settings(settings), options(options) {
    tickDeadline.setSingleShot(true);
    tickDeadline.setInterval(tickLimitMilliseconds);
    connect(&tickDeadline, &QTimer::timeout, &tickLoop, &QEventLoop::quit);
    connect(&monitor, &SystemMonitor::sampled, this, [this] {
        sampled = true;
        tickLoop.quit();
    });
    // As the application does: a change made by another process shows within one tick.
    connect(&monitor, &SystemMonitor::sampled, &settings, &AppSettings::reloadIfChanged);
}

void SoakRun::enableEveryItem() {
    settings.setPersistCPU(true);
    settings.setPersistMemory(true);
    settings.setPersistDisk(true);
    settings.setPersistNetworkIn(true);
    settings.setPersistNetworkOut(true);
    settings.setPersistNetwork(true);
    settings.setPersistCPUTemp(true);
    settings.setPersistGPUTemp(true);
    settings.setPersistFan(true);
}

bool SoakRun::runOneTick() {
    sampled = false;
    tickDeadline.start();
    monitor.updateStats();
    if (!sampled)
        tickLoop.exec();
    tickDeadline.stop();
    return sampled;
}

void SoakRun::settle() {
    // Redraws and deferred deletions queued by the last sample run before counting.
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

ProcessFigures SoakRun::settledFigures(int tick, double seconds) {
    settle();
    const ProcessFigures figures = readProcessFigures();
    std::printf("tick %d after %.1f s: %s\n", tick, seconds, describeFigures(figures).c_str());
    std::fflush(stdout);
    return figures;
}

bool SoakRun::stillShowing() const {
    const StatusBarManager& manager = StatusBarManager::shared();
    bool ok = true;
    // Nine kinds, of which the network shows as two items or as one.
    const std::size_t expectedItemCount = settings.networkCombined() ? 7 : 8;
    if (manager.items().size() != expectedItemCount) {
        std::printf("expected %zu tray items, found %zu\n", expectedItemCount,
                    manager.items().size());
        ok = false;
    }
    if (!manager.openPopover(options.popover)) {
        std::printf("the detail popover closed during the run\n");
        ok = false;
    }
    return ok;
}

int SoakRun::run() {
    if (flipsUpTo(options.baselineTick) % 2 != flipsUpTo(options.ticks) % 2) {
        std::printf("ticks %d and %d show different network layouts; pick another pair\n",
                    options.baselineTick, options.ticks);
        return 2;
    }
    enableEveryItem();
    StatusBarManager& manager = StatusBarManager::shared();
    manager.setup(monitor, settings);
    manager.statusItemClicked(sensorTypeIndex(options.popover));
    settle();
    if (!stillShowing())
        return 1;

    QElapsedTimer clock;
    clock.start();
    ProcessFigures baseline;
    for (int tick = 1; tick <= options.ticks; ++tick) {
        if (!runOneTick()) {
            std::printf("tick %d published nothing within %d ms\n", tick, tickLimitMilliseconds);
            return 1;
        }
        if (tick % flipPeriod == flipPeriod / 2)
            settings.setNetworkCombined(!settings.networkCombined());
        if (tick == options.baselineTick)
            baseline = settledFigures(tick, static_cast<double>(clock.elapsed()) / 1000.0);
    }
    const ProcessFigures end =
        settledFigures(options.ticks, static_cast<double>(clock.elapsed()) / 1000.0);
    std::printf("helper: %s; last sample: %zu sensors, %zu fans, temperature %.1f\n",
                monitor.thermalMonitor().helperPath().value_or("(none)").c_str(),
                monitor.allSensors().size(), monitor.fans().size(), monitor.temperature());

    bool passed = stillShowing();
    for (const std::string& finding : growthBeyond(baseline, end, options.tolerance)) {
        std::printf("growth: %s\n", finding.c_str());
        passed = false;
    }
    std::printf("%s\n", passed ? "soak passed" : "soak FAILED");
    std::fflush(stdout);
    StatusBarManager::shared().removeAllStatusItems();
    return passed ? 0 : 1;
}
