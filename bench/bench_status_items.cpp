// One whole redraw of all nine tray items: readings and settings to button
// models, and each model composed into the 22 px picture a tray host shows.
// The StatusNotifierItem case needs a session bus: run under dbus-run-session.
#include "app/StatusBarManager.h"
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
    sample.thermal.fans = {{0, 2000.0 + tick % 100, 0, 6000, 0}};
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

// The manager's own update: models for its eight items and the changed ones handed to the tray.
void BM_UpdateStatusItems(benchmark::State& state) {
    NineItems items;
    StatusBarManager manager;
    manager.setup(items.monitor, items.settings);
    int tick = 60;
    for (auto _ : state) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
    }
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
    const qint64 before = offered();
    int tick = 60;
    for (auto _ : state) {
        items.monitor.publish(sampleAt(tick++));
        manager.updateStatusItems();
    }
    state.counters["items"] = double(manager.items().size());
    state.counters["bytes_per_tick"] = double(offered() - before) / double(state.iterations());
    manager.removeAllStatusItems();
    watcher.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    QDBusConnection::disconnectFromBus("w");
}

} // namespace

BENCHMARK(BM_AllNineItemsModelsAndPictures)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_UpdateStatusItems)
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
