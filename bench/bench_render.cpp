// Rendering one tray item, from readings to the square icon a tray host shows.
#include "AllocationCount.h"
#include "views/menubar/ButtonModel.h"
#include "views/menubar/TrayIconComposer.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

namespace {

MenuBarReadings benchReadings() {
    MenuBarReadings r;
    r.cpuUsage = 0.42;
    r.memoryUsed = 11.0;
    r.memoryTotal = 16.0;
    r.diskUsed = 64.0;
    r.diskTotal = 100.0;
    r.networkBytesIn = 1572864.0;
    r.networkBytesOut = 524288.0;
    r.temperature = 78.0;
    r.gpuTemperature = 52.0;
    r.fanSpeed = 2400;
    r.fanMaxSpeed = 6000;
    for (int i = 0; i < 60; ++i) {
        r.cpuHistory.push_back(0.2 + 0.05 * (i % 9));
        r.memoryHistory.push_back(0.6 + 0.01 * (i % 5));
        r.networkInHistory.push_back(150000.0 * ((i * 37) % 11));
        r.networkOutHistory.push_back(50000.0 * ((i * 17) % 7));
        r.temperatureHistory.push_back(60.0 + (i % 13));
    }
    return r;
}

// Arguments: style index, pixel size, sensor type index.
void renderItem(benchmark::State& state) {
    const auto style = static_cast<PersistentStyle>(state.range(0));
    const int pixelSize = static_cast<int>(state.range(1));
    const auto type = static_cast<SensorType>(state.range(2));
    const MenuBarReadings readings = benchReadings();
    MenuBarAppearance appearance;
    appearance.style = style;
    const TrayIconComposer composer;
    auto render = [&] {
        const ButtonModel model = buildButtonModel(type, readings, appearance);
        QImage icon = composer.compose(model, pixelSize);
        benchmark::DoNotOptimize(icon.constBits());
    };
    render();
    measureAllocations(state, "allocs", render);
    state.SetLabel(std::string(rawValue(style)) + " " + std::string(rawValue(type)));
}

void renderArguments(benchmark::internal::Benchmark* bench) {
    for (int style = 0; style < 3; ++style)
        for (int size : {22, 44})
            for (SensorType type : {SensorType::cpu, SensorType::disk, SensorType::network})
                bench->Args({style, size, static_cast<int>(type)});
}

BENCHMARK(renderItem)->Apply(renderArguments)->Repetitions(9)->ReportAggregatesOnly(true);

// The convenience function builds its composer (fonts, metrics) on every call.
void renderItemWithFreshComposer(benchmark::State& state) {
    const MenuBarReadings readings = benchReadings();
    MenuBarAppearance appearance;
    appearance.style = PersistentStyle::graphAndText;
    for (auto _ : state) {
        QImage icon = composeTrayIcon(buildButtonModel(SensorType::cpu, readings, appearance),
                                      static_cast<int>(state.range(0)));
        benchmark::DoNotOptimize(icon.constBits());
    }
}

BENCHMARK(renderItemWithFreshComposer)
    ->Arg(22)
    ->Arg(44)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
