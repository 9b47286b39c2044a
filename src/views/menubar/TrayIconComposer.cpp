#include "TrayIconComposer.h"

#include "MenuBarValueText.h"
#include "RingGauge.h"
#include "Sparkline.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// The size tray hosts most often ask for; line widths are designed for it.
constexpr qreal designPixels = 22.0;
// Under the text, the graph takes at most this share of the height.
constexpr qreal graphShareUnderText = 0.5;
// Below this size an icon run would halve the number; the tooltip and label carry it.
constexpr int smallestSideWithIcon = 32;

// The title as the square draws it, with `value` (when given) in place of the value text.
// The download and upload items keep their arrow whatever the icon setting: "0B" alone
// does not say which way.
std::vector<TitleRun> squareTitle(const ButtonModel& model, int pixelSize,
                                  const std::optional<QString>& value = std::nullopt) {
    std::vector<TitleRun> runs;
    bool hasIcon = false;
    for (const TitleRun& run : model.title) {
        if (run.kind == TitleRun::Kind::icon) {
            if (pixelSize < smallestSideWithIcon)
                continue;
            hasIcon = true;
        }
        runs.push_back(run);
        if (run.kind == TitleRun::Kind::value && value)
            runs.back().text = *value;
    }
    const bool directional =
        model.type == SensorType::networkIn || model.type == SensorType::networkOut;
    if (directional && !hasIcon)
        for (TitleRun& run : runs)
            if (run.kind == TitleRun::Kind::value)
                run.text = menuBarIcon(model.type) + run.text.trimmed();
    return runs;
}

bool validProportions(const MenuBarGraph& graph) {
    return std::isfinite(graph.width) && std::isfinite(graph.height) && graph.width > 0.0 &&
           graph.height > 0.0;
}

// Width over height: a sparkline keeps graphWidth : graphHeight, a gauge is round.
qreal aspectOf(const MenuBarGraph& graph) {
    return graph.kind == MenuBarGraph::Kind::ringGauge ? 1.0 : graph.width / graph.height;
}

// The largest rectangle of the graph's proportions that fits `box`, centred in it.
QRectF fitted(const MenuBarGraph& graph, const QRectF& box) {
    const qreal aspect = aspectOf(graph);
    qreal width = box.width();
    qreal height = width / aspect;
    if (height > box.height()) {
        height = box.height();
        width = height * aspect;
    }
    return {box.center().x() - width / 2.0, box.center().y() - height / 2.0, width, height};
}

} // namespace

TrayIconComposer::TrayIconComposer(const TrayIconFonts& fonts) : text(fonts) {}

void TrayIconComposer::paintGraph(QPainter& painter, const MenuBarGraph& graph, const QRectF& box,
                                  qreal unit) const {
    if (graph.kind == MenuBarGraph::Kind::ringGauge) {
        paintRingGauge(painter, box, graph.fraction, graph.colour, 2.0 * unit);
        return;
    }
    const auto samples = lastSamples(graph.samples, sparklineSampleCount(graph.width));
    paintSparkline(painter, box, samples, graph.scaleMaximum, graph.colour, unit);
}

QImage TrayIconComposer::compose(const ButtonModel& model, int pixelSize,
                                 qreal devicePixelRatio) const {
    if (pixelSize <= 0 || !(devicePixelRatio > 0.0))
        return {};
    const int physical = static_cast<int>(std::lround(pixelSize * devicePixelRatio));
    QImage image(physical, physical, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(devicePixelRatio);

    const qreal side = pixelSize;
    const qreal unit = side / designPixels;
    const QRectF square(0.0, 0.0, side, side);
    const bool drawsGraph = model.image && validProportions(*model.image);
    const bool drawsText = model.style != PersistentStyle::graphOnly && !model.title.empty();

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawsGraph && !drawsText) {
        paintGraph(painter, *model.image, fitted(*model.image, square), unit);
        return image;
    }
    // A thin side margin keeps glyph overhangs inside the picture.
    const qreal margin = 0.5 * unit;
    const std::vector<TitleRun> title = squareTitle(model, pixelSize);
    const std::vector<TitleRun> widest = squareTitle(model, pixelSize, widestValueText(model.type));
    if (!drawsGraph) {
        text.paint(painter, text.place(title, square.adjusted(margin, 0, -margin, 0), &widest));
        return image;
    }

    const qreal graphHeight = std::min(side / aspectOf(*model.image), side * graphShareUnderText);
    const QRectF graphRect =
        fitted(*model.image, QRectF(0.0, side - graphHeight, side, graphHeight));
    const QRectF textBox(margin, 0.0, side - 2.0 * margin, graphRect.top() - unit);
    paintGraph(painter, *model.image, graphRect, unit);
    text.paint(painter, text.place(title, textBox, &widest));
    return image;
}

QImage composeTrayIcon(const ButtonModel& model, int pixelSize, qreal devicePixelRatio) {
    const TrayIconComposer composer;
    return composer.compose(model, pixelSize, devicePixelRatio);
}
