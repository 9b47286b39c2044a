#include "TimerRun.h"

#include "ProcessFigures.h"
#include "SettingsCommand.h"
#include "app/StatusBarManager.h"
#include "monitors/NetworkMonitor.h"
#include "monitors/SystemMonitor.h"

#include <QCoreApplication>

#include <cstdio>

TimerRun::TimerRun(const QString& settingsFile, QObject* parent)
    : QObject(parent), app(settingsFile) {
    // Without a tray host the app would wait for one; the items work without it.
    StatusBarManager::shared().setup(app.systemMonitor(), app.settings());
    connect(&app.systemMonitor(), &SystemMonitor::sampled, this, &TimerRun::reportSample);
    connect(&input, &StdinLines::lineReceived, this, &TimerRun::answer);
    connect(&input, &StdinLines::closed, qApp, &QCoreApplication::quit);
    const auto& helper = app.systemMonitor().thermalMonitor().helperPath();
    std::printf("ready helper=%s\n", helper ? helper->c_str() : "(none)");
    std::fflush(stdout);
}

void TimerRun::reportSample() {
    const SystemMonitor& monitor = app.systemMonitor();
    const ProcessFigures figures = readProcessFigures();
    // CLOCK_MONOTONIC, the clock the tests read as well.
    std::printf("sample t=%.3f temp=%.2f gpu=%.2f sensors=%zu fans=%zu items=%zu fds=%ld "
                "threads=%ld children=%ld\n",
                monotonicSeconds(), monitor.temperature(), monitor.gpuTemperature(),
                monitor.allSensors().size(), monitor.fans().size(),
                StatusBarManager::shared().items().size(), figures.openFds, figures.threads,
                figures.children);
    std::fflush(stdout);
}

void TimerRun::answer(const std::string& line) {
    if (line == "quit") {
        QCoreApplication::quit();
        return;
    }
    std::printf("setting %s\n", answerSettingsCommand(app.settings(), line).c_str());
    std::fflush(stdout);
}
