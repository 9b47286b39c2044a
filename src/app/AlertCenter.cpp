#include "AlertCenter.h"

#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "views/popovers/DetailFigureText.h"
#include "views/popovers/MemoryPressure.h"

#include <cmath>

namespace {

// " for 30 s", or " for 2 min" from a minute on; nothing for an alert with no duration.
QString durationText(double seconds) {
    if (seconds < 1.0)
        return {};
    return seconds < 60.0 ? QStringLiteral(" for %1 s").arg(std::lround(seconds))
                          : QStringLiteral(" for %1 min").arg(std::lround(seconds / 60.0));
}

// "Busiest process: firefox (187.4% of one core)"; nothing before the first read.
QString topProcessText(const QString& label, const std::vector<ProcessFigure>& processes,
                       const std::function<QString(double)>& figure) {
    if (processes.empty())
        return {};
    return label + QStringLiteral(": %1 (%2)")
                       .arg(QString::fromStdString(processes.front().name),
                            figure(processes.front().value));
}

SensorType detailOf(AlertKind kind) {
    switch (kind) {
    case AlertKind::cpuTemperature:
        return SensorType::cpuTemp;
    case AlertKind::cpuLoad:
        return SensorType::cpu;
    case AlertKind::memoryPressure:
        return SensorType::memory;
    case AlertKind::diskFull:
        return SensorType::disk;
    case AlertKind::fansHandedBack:
        return SensorType::fan;
    }
    return SensorType::cpu;
}

} // namespace

AlertCenter::AlertCenter(SystemMonitor& monitor, AppSettings& settings,
                         std::function<void(SensorType)> openDetail, QObject* parent)
    : QObject(parent), monitor(monitor), settings(settings), openDetail(std::move(openDetail)) {
    clock.start();
    connect(&monitor, &SystemMonitor::sampled, this, &AlertCenter::onSample);
    connect(&notifications, &DesktopNotifications::activated, this, [this](int tag) {
        if (this->openDetail)
            this->openDetail(detailOf(static_cast<AlertKind>(tag)));
    });
}

void AlertCenter::onSample() {
    // Fans are handed back when the failsafe trips or the daemon dies: the daemon's
    // problem says so, once for each new problem. This alert is always on.
    const std::string problem = monitor.thermalMonitor().daemonProblem();
    const bool handedBack =
        problem != lastFanProblem && problem.find("handed back") != std::string::npos;
    lastFanProblem = problem;

    const AlertTracker::Rules rules{{
        {settings.alertCPUTemp(), settings.alertCPUTempLimit(), settings.alertCPUTempSeconds()},
        {settings.alertCPU(), settings.alertCPULimit(), settings.alertCPUSeconds()},
        {settings.alertMemory(), 1.0, settings.alertMemorySeconds()},
        {settings.alertDisk(), settings.alertDiskLimit(), settings.alertDiskSeconds()},
        {true, 1.0, 0.0},
    }};
    const AlertTracker::Values values{
        monitor.temperature() > 0.0 ? monitor.temperature() : std::nan(""),
        monitor.cpuUsage() * 100.0,
        memoryPressure(monitor.memoryFraction()) == MemoryPressure::high ? 1.0 : 0.0,
        monitor.diskFraction() * 100.0,
        handedBack ? 1.0 : 0.0,
    };
    for (const FiredAlert& alert : tracker.update(clock.elapsed() / 1000.0, rules, values))
        notify(alert);
    const bool pending =
        tracker.isAbove(AlertKind::cpuLoad) || tracker.isAbove(AlertKind::memoryPressure);
    if (pending && !processes.isWatching())
        processes =
            monitor.watchDetails(DetailFigure::busiestProcesses | DetailFigure::largestProcesses);
    else if (!pending)
        processes = {};
}

void AlertCenter::notify(const FiredAlert& alert) {
    const QString held = durationText(alert.heldSeconds);
    QString summary, body;
    switch (alert.kind) {
    case AlertKind::cpuTemperature:
        summary = QStringLiteral("CPU at %1 °C").arg(std::lround(alert.value)) + held;
        break;
    case AlertKind::cpuLoad:
        summary = QStringLiteral("CPU at %1 %").arg(std::lround(alert.value)) + held;
        body = topProcessText(
            QStringLiteral("Busiest process"), monitor.busiestProcesses(),
            [](double share) { return coreShareText(share) + QStringLiteral(" of one core"); });
        break;
    case AlertKind::memoryPressure:
        summary = QStringLiteral("Memory pressure high") + held +
                  QStringLiteral(": %1 % used").arg(std::lround(monitor.memoryFraction() * 100.0));
        body = topProcessText(QStringLiteral("Largest process"), monitor.largestProcesses(),
                              byteSizeText);
        break;
    case AlertKind::diskFull:
        summary = QStringLiteral("Root volume %1 % full").arg(std::lround(alert.value));
        body = QStringLiteral("%1 GB available").arg(monitor.diskAvailable(), 0, 'f', 1);
        break;
    case AlertKind::fansHandedBack:
        summary = QStringLiteral("Fans handed back to automatic control");
        body = QString::fromStdString(lastFanProblem);
        break;
    }
    const bool urgent =
        alert.kind == AlertKind::cpuTemperature || alert.kind == AlertKind::fansHandedBack;
    notifications.show(summary, body, urgent, static_cast<int>(alert.kind));
}
