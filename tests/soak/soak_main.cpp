// vorlune_soak: the application's sampling, tray items and popovers under load.
//   vorlune_soak SETTINGS [TICKS=20000 [BASELINE=1000 [HEAP_TOLERANCE=65536]]]
//     runs TICKS sampling ticks back to back with every item shown and the CPU popover
//     open, and fails when threads, descriptors, zombies or heap grew after BASELINE.
//   vorlune_soak --timer SETTINGS
//     the app on its own 2-second timer: a "sample t=<CLOCK_MONOTONIC s> temp= ..." line per
//     sample; "get KEY", "set KEY VALUE" on stdin are answered "setting KEY=<value read back>".

#include "app/StatusBarManager.h"
#include "app/VorluneApp.h"
#include "monitors/NetworkMonitor.h"
#include "monitors/SystemMonitor.h"
#include "monitors/linux/IgnoreSigpipe.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QDir>
#include <QMetaProperty>
#include <QTimer>

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <thread>

#if defined(__SANITIZE_ADDRESS__) || (defined(__has_feature) && __has_feature(address_sanitizer))
// GCC's libasan exports this but ships no header for it.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#define VORLUNE_SOAK_ASAN 1
#else
#include <malloc.h>
#endif

namespace {

// threads, fds, zombies, heap bytes; -1 where a figure could not be read.
using Figures = std::array<long long, 4>;
constexpr const char* figureNames[] = {"threads", "fds", "zombies", "heap"};

long long countEntries(const char* path) {
    std::error_code error;
    const auto count = std::distance(std::filesystem::directory_iterator(path, error), {});
    return error ? -1 : count;
}

// Children that ended and were not reaped. Each thread lists its own as "pid pid "; the
// serving helper is a child that lives on, and is not counted.
long long countZombies() {
    long long zombies = 0;
    for (const QString& task :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile list(QStringLiteral("/proc/self/task/%1/children").arg(task));
        if (!list.open(QIODevice::ReadOnly))
            return -1;
        for (const QByteArray& pid : list.readAll().split(' ')) {
            QFile stat(QStringLiteral("/proc/%1/stat").arg(QString::fromLatin1(pid)));
            if (pid.isEmpty() || !stat.open(QIODevice::ReadOnly))
                continue;
            const QByteArray text = stat.readAll();
            const qsizetype nameEnd = text.lastIndexOf(") ");
            zombies += nameEnd >= 0 && text.mid(nameEnd + 2, 1) == "Z";
        }
    }
    return zombies;
}

Figures readFigures() {
#ifdef VORLUNE_SOAK_ASAN
    // ASan replaces malloc; glibc's counters would see none of the program's blocks.
    const auto heap = static_cast<long long>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    const auto heap = static_cast<long long>(info.uordblks + info.hblkhd);
#endif
    // The listing holds one descriptor of its own while counting.
    return {countEntries("/proc/self/task"), countEntries("/proc/self/fd") - 1, countZombies(),
            heap};
}

void printFigures(int tick, const Figures& figures) {
    std::printf("tick %d: threads=%lld fds=%lld zombies=%lld heap=%lld\n", tick, figures[0],
                figures[1], figures[2], figures[3]);
}

// Redraws and deferred deletions queued by the last sample run before counting.
void settle() {
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

bool stillShowing(const AppSettings& settings) {
    const StatusBarManager& manager = StatusBarManager::shared();
    // Nine kinds, of which the network shows as two items or as one.
    const std::size_t expected = settings.networkCombined() ? 7 : 8;
    const bool popoverOpen = manager.openPopover(SensorType::cpu) != nullptr;
    std::printf("%zu tray items (expected %zu), CPU popover %s\n", manager.items().size(), expected,
                popoverOpen ? "open" : "CLOSED");
    return manager.items().size() == expected && popoverOpen;
}

int soak(const QString& settingsFile, int ticks, int baselineTick, long long heapTolerance) {
    // Flipping the network layout makes the separate and combined items come and go; the
    // flips fall half-way between multiples of flipPeriod, so both counts see one layout.
    constexpr int flipPeriod = 500;
    const auto flips = [](int tick) { return (tick + flipPeriod / 2) / flipPeriod; };
    if (settingsFile.isEmpty() || baselineTick < 1 || baselineTick >= ticks ||
        flips(baselineTick) % 2 != flips(ticks) % 2) {
        std::printf("usage: vorlune_soak SETTINGS [TICKS [BASELINE [HEAP_TOLERANCE]]], with "
                    "BASELINE < TICKS "
                    "and both on the same network layout (%d, %d)\n",
                    baselineTick, ticks);
        return 2;
    }
    AppSettings settings(settingsFile);
    SystemMonitor monitor(SamplingMonitors::forThisMachine(), false);
    for (const char* key :
         {"persistCPU", "persistMemory", "persistDisk", "persistNetworkIn", "persistNetworkOut",
          "persistNetwork", "persistCPUTemp", "persistGPUTemp", "persistFan"})
        settings.setProperty(key, true);
    StatusBarManager& manager = StatusBarManager::shared();
    manager.setup(monitor, settings);
    manager.statusItemClicked(sensorTypeIndex(SensorType::cpu));
    settle();
    if (!stillShowing(settings))
        return 1;

    bool sampled = false;
    QObject::connect(&monitor, &SystemMonitor::sampled, [&] { sampled = true; });
    QTimer deadline;
    deadline.setSingleShot(true);
    // As the application does: a change made by another process shows within one tick.
    QObject::connect(&monitor, &SystemMonitor::sampled, &settings, &AppSettings::reloadIfChanged);
    Figures baseline{};
    for (int tick = 1; tick <= ticks; ++tick) {
        sampled = false;
        monitor.updateStats();
        // A tick takes milliseconds; one that takes 10 s has hung.
        deadline.start(10000);
        while (!sampled && deadline.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!sampled) {
            std::printf("tick %d published nothing within 10 s\n", tick);
            return 1;
        }
        if (tick % flipPeriod == flipPeriod / 2)
            settings.setNetworkCombined(!settings.networkCombined());
        if (tick == baselineTick) {
            settle();
            printFigures(tick, baseline = readFigures());
        }
    }
    settle();
    const Figures end = readFigures();
    printFigures(ticks, end);
    std::printf("helper: %s; last sample: %zu sensors, %zu fans, temperature %.1f\n",
                monitor.thermalMonitor().helperPath().value_or("(none)").c_str(),
                monitor.allSensors().size(), monitor.fans().size(), monitor.temperature());

    bool passed = stillShowing(settings);
    // Threads, descriptors and zombies are counted between ticks, when only the serving
    // helper runs: they must not move at all. The heap moves by a few kilobytes while Qt's caches
    // follow what was drawn last; a container that keeps 4 bytes a tick exceeds the
    // default tolerance over 19,000 ticks.
    const Figures tolerance{0, 0, 0, heapTolerance};
    for (std::size_t i = 0; i < end.size(); ++i) {
        if (baseline[i] < 0 || end[i] < 0 || end[i] - baseline[i] > tolerance[i]) {
            std::printf("growth: %s from %lld to %lld (tolerance %lld)\n", figureNames[i],
                        baseline[i], end[i], tolerance[i]);
            passed = false;
        }
    }
    std::printf("%s\n", passed ? "soak passed" : "soak FAILED");
    manager.removeAllStatusItems();
    return passed ? 0 : 1;
}

QString answer(AppSettings& settings, const QString& line) {
    const QString verb = line.section(QLatin1Char(' '), 0, 0);
    const QString key = line.section(QLatin1Char(' '), 1, 1);
    const int index = settings.metaObject()->indexOfProperty(key.toLatin1().constData());
    // objectName and the other QObject properties are not settings.
    if (index < QObject::staticMetaObject.propertyCount() || (verb != "get" && verb != "set"))
        return QStringLiteral("error: ") + line;
    const QMetaProperty property = settings.metaObject()->property(index);
    // Text values may hold spaces ("Graph & Text"): the value is the rest of the line.
    if (verb == "set" && !property.write(&settings, line.section(QLatin1Char(' '), 2)))
        return QStringLiteral("error: ") + line;
    return key + "=" + property.read(&settings).toString();
}

int timer(const QString& settingsFile) {
    VorluneApp app(settingsFile);
    // Without a tray host the app would wait for one; the items work without it.
    StatusBarManager::shared().setup(app.systemMonitor(), app.settings());
    const SystemMonitor& monitor = app.systemMonitor();
    QObject::connect(&monitor, &SystemMonitor::sampled, [&] {
        const Figures figures = readFigures();
        std::printf("sample t=%.3f temp=%.2f gpu=%.2f sensors=%zu fans=%zu items=%zu fds=%lld "
                    "threads=%lld zombies=%lld\n",
                    monotonicSeconds(), monitor.temperature(), monitor.gpuTemperature(),
                    monitor.allSensors().size(), monitor.fans().size(),
                    StatusBarManager::shared().items().size(), figures[1], figures[0], figures[2]);
    });
    // Lines are read on a thread of their own and answered between samples.
    std::thread([&app] {
        for (std::string line; std::getline(std::cin, line);) {
            QMetaObject::invokeMethod(&app, [&app, line = QString::fromStdString(line)] {
                if (line == QLatin1String("quit"))
                    QCoreApplication::quit();
                else
                    std::printf("setting %s\n", qPrintable(answer(app.settings(), line)));
            });
        }
        QMetaObject::invokeMethod(&app, &QCoreApplication::quit);
    }).detach();
    std::printf("ready helper=%s\n",
                app.systemMonitor().thermalMonitor().helperPath().value_or("(none)").c_str());
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    // Line by line: the tests read the output as it comes.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    ignoreSigpipe();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == QLatin1String("--timer"))
        return timer(arguments.value(2));
    return soak(arguments.value(1), arguments.value(2, "20000").toInt(),
                arguments.value(3, "1000").toInt(), arguments.value(4, "65536").toLongLong());
}
