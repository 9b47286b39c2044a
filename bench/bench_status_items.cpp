// One whole redraw of all nine tray items: readings and settings to button
// models, and each model composed into the 22 px picture a tray host shows.
// The StatusNotifierItem case needs a session bus: run under dbus-run-session.
#include "AllocationCount.h"
#include "app/StatusBarManager.h"
#include "app/TrayItem.h"
#include "app/linux/StatusNotifierItem.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "views/menubar/ButtonModel.h"
#include "views/menubar/TrayIconComposer.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QTemporaryDir>

#include <map>

namespace {

SystemSample sampleAt(int tick) {
    SystemSample sample;
    sample.cpuUsage = 0.1 + 0.01 * (tick % 50);
    sample.coreUsages = {0.2, 0.4};
    sample.memory = {9.0 + 0.01 * (tick % 7), 16.0, 0, 0, 0, 0};
    sample.disk = {120.0, 250.0};
    sample.network = {1000.0 * (tick % 13), 300.0 * (tick % 5)};
    sample.thermal.cpuTemp = 60.0 + tick % 20;
    sample.thermal.gpuTemp = 50.0 + tick % 10;
    sample.thermal.fans = {FanInfo{.id = 0,
                                   .key = "hwmon/nct6775/platform/fan1",
                                   .actual = 2000.0 + tick % 100,
                                   .min = 0,
                                   .max = 6000,
                                   .target = 0}};
    return sample;
}

struct NineItems {
    NineItems() : settings(directory.filePath("vorlune.conf")) {
        settings.setPersistCPU(true);
        settings.setPersistMemory(true);
        settings.setPersistDisk(true);
        settings.setPersistNetworkIn(true);
        settings.setPersistNetworkOut(true);
        settings.setPersistCPUTemp(true);
        settings.setPersistGPUTemp(true);
        settings.setPersistFan(true);
        settings.setPersistentDisplayStyle(PersistentStyle::graphAndText);
        for (int tick = 0; tick < 60; ++tick)
            monitor.publish(sampleAt(tick));
    }
    QTemporaryDir directory;
    AppSettings settings;
    SystemMonitor monitor{SamplingMonitors::forThisMachine(), false};
};

// The models and pictures of all nine kinds (the combined network item stands in
// for the two separate ones in half of real set-ups; all nine are drawn here).
void BM_AllNineItemsModelsAndPictures(benchmark::State& state) {
    NineItems items;
    const TrayIconComposer composer;
    int tick = 60;
    for (auto _ : state) {
        items.monitor.publish(sampleAt(tick++));
        for (SensorType type : allCases<SensorType>()) {
            const ButtonModel model =
                StatusBarManager::buttonModel(type, items.monitor, items.settings);
            benchmark::DoNotOptimize(composer.compose(model, 22).constBits());
        }
    }
}

// Over XEmbed (no watcher on the bus): the manager's update, and for each item given a new
// picture the repaint of its tray window, which composes the square and puts its pixels
// to the X server.
void BM_UpdateStatusItemsXEmbed(benchmark::State& state) {
    NineItems items;
    StatusBarManager manager;
    manager.setup(items.monitor, items.settings);
    const TrayIconComposer composer;
    std::map<const TrayItem*, int> painted;
    qint64 bytes = 0;
    auto repaint = [&] {
        for (const auto& [type, item] : manager.items()) {
            int& count = painted[item.get()];
            if (count == item->redrawCount())
                continue;
            count = item->redrawCount();
            const QImage square = composer.compose(item->model(), 22);
            benchmark::DoNotOptimize(square.constBits());
            bytes += square.sizeInBytes();
        }
    };
    int tick = 60;
    for (int warm = 0; warm < 3; ++warm) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
        repaint();
    }
    bytes = 0;
    const std::uint64_t allocatedBefore = allocationsOnThisThread();
    for (auto _ : state) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
        repaint();
    }
    const double ticks = double(state.iterations());
    state.counters["allocs_per_tick"] = double(allocationsOnThisThread() - allocatedBefore) / ticks;
    state.counters["bytes_per_tick"] = double(bytes) / ticks;
    state.counters["items"] = double(manager.items().size());
    manager.removeAllStatusItems();
}

// The same over StatusNotifierItem, with a stand-in watcher so the items go on the bus.
// Counts what a host fetches after each change: the pictures, tooltips and labels.
void BM_UpdateStatusItemsOverBus(benchmark::State& state) {
    QDBusConnection watcher = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "w");
    if (!watcher.isConnected() ||
        !watcher.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        state.SkipWithError("no session bus: run under dbus-run-session");
        return;
    }
    NineItems items;
    items.settings.setNetworkCombined(true);
    items.settings.setPersistNetwork(true);
    StatusBarManager manager;
    manager.setup(items.monitor, items.settings);
    manager.updateStatusItems();
    auto offered = [&manager] {
        qint64 bytes = 0;
        for (const auto& [type, item] : manager.items())
            if (const auto* sni = dynamic_cast<const StatusNotifierItem*>(item.get()))
                bytes += sni->pictureBytesOffered() +
                         2 * (sni->sniToolTip().text.size() + sni->label().size());
        return bytes;
    };
    int tick = 60;
    for (int warm = 0; warm < 3; ++warm) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
    }
    const qint64 before = offered();
    const std::uint64_t allocatedBefore = allocationsOnThisThread();
    for (auto _ : state) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
    }
    const double ticks = double(state.iterations());
    state.counters["allocs_per_tick"] = double(allocationsOnThisThread() - allocatedBefore) / ticks;
    state.counters["items"] = double(manager.items().size());
    state.counters["bytes_per_tick"] = double(offered() - before) / ticks;
    manager.removeAllStatusItems();
    watcher.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    QDBusConnection::disconnectFromBus("w");
}

} // namespace

BENCHMARK(BM_AllNineItemsModelsAndPictures)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_UpdateStatusItemsXEmbed)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_UpdateStatusItemsOverBus)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
