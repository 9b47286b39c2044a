#include "MenuBarGraph.h"

#include "MenuBarColor.h"
#include "RingGauge.h"
#include "Sparkline.h"

#include <algorithm>

namespace {

double largestOrOne(const std::vector<double>& history) {
    double largest = 1.0;
    for (double value : history)
        largest = std::max(largest, value);
    return largest;
}

MenuBarGraph sparkline(const std::vector<double>& history, double scaleMaximum,
                       const MenuBarAppearance& appearance) {
    MenuBarGraph graph;
    graph.kind = MenuBarGraph::Kind::sparkline;
    graph.samples = lastSamples(history, sparklineSampleCount(appearance.graphWidth));
    graph.scaleMaximum = scaleMaximum;
    return graph;
}

MenuBarGraph ringGauge(double fraction) {
    MenuBarGraph graph;
    graph.kind = MenuBarGraph::Kind::ringGauge;
    graph.fraction = fraction;
    return graph;
}

MenuBarGraph graphOf(SensorType type, const MenuBarReadings& readings,
                     const MenuBarAppearance& appearance) {
    switch (type) {
    case SensorType::cpu:
        return sparkline(readings.cpuHistory, 1.0, appearance);
    case SensorType::memory:
        return sparkline(readings.memoryHistory, 1.0, appearance);
    case SensorType::disk:
        return ringGauge(readings.diskFraction());
    case SensorType::networkIn:
        return sparkline(readings.networkInHistory, largestOrOne(readings.networkInHistory),
                         appearance);
    case SensorType::networkOut:
        return sparkline(readings.networkOutHistory, largestOrOne(readings.networkOutHistory),
                         appearance);
    case SensorType::network:
        // Both directions share one scale, but only downloads are drawn.
        return sparkline(readings.networkInHistory,
                         std::max(largestOrOne(readings.networkInHistory),
                                  largestOrOne(readings.networkOutHistory)),
                         appearance);
    case SensorType::cpuTemp:
        return sparkline(readings.temperatureHistory, 110.0, appearance);
    case SensorType::gpuTemp:
        return ringGauge(readings.gpuTemperature / 110.0);
    case SensorType::fan:
        // A maximum of 0 gives an infinite or NaN fraction, which the gauge clamps.
        return ringGauge(static_cast<double>(readings.fanSpeed) /
                         static_cast<double>(readings.fanMaxSpeed));
    }
    return {};
}

} // namespace

QImage MenuBarGraph::image(qreal devicePixelRatio) const {
    if (kind == Kind::ringGauge)
        return ringGaugeImage(fraction, height, colour, devicePixelRatio);
    return sparklineImage(samples, scaleMaximum, colour, width, height, devicePixelRatio);
}

MenuBarGraph menuBarGraph(SensorType type, const MenuBarReadings& readings,
                          const MenuBarAppearance& appearance) {
    MenuBarGraph graph = graphOf(type, readings, appearance);
    graph.colour = menuBarColor(type, readings, appearance);
    graph.width = appearance.graphWidth;
    graph.height = appearance.graphHeight;
    return graph;
}
