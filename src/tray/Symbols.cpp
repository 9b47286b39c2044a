#include "Symbols.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <utility>

static void loadIconResources() {
    static const bool loaded = [] {
        Q_INIT_RESOURCE(icons);
        return true;
    }();
    (void)loaded;
}

namespace {

// Each symbol name of the views, and the bundled icon drawn for it.
constexpr std::array<std::pair<std::string_view, const char*>, 21> symbolFiles{{
    {"heart.text.clipboard", "heart-pulse"},
    {"heart.text.square.fill", "heart-pulse"},
    {"cpu", "cpu"},
    {"memorychip", "memory-stick"},
    {"internaldrive", "hard-drive"},
    {"network", "network"},
    {"arrow.down", "arrow-down"},
    {"arrow.up", "arrow-up"},
    {"arrow.down.circle", "circle-arrow-down"},
    {"arrow.up.circle", "circle-arrow-up"},
    {"arrow.up.arrow.down.circle", "arrow-down-up"},
    {"thermometer.high", "thermometer"},
    {"thermometer.medium", "thermometer"},
    {"fan", "fan"},
    {"fan.fill", "fan"},
    {"gauge.with.dots.needle.33percent", "gauge"},
    {"terminal", "terminal"},
    {"gear", "settings"},
    {"paintbrush", "paintbrush"},
    {"info.circle", "info"},
    {"lock.shield", "shield"},
}};

QByteArray svgSource(std::string_view symbolName) {
    loadIconResources();
    for (const auto& [name, file] : symbolFiles) {
        if (name != symbolName)
            continue;
        QFile svg(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(file)));
        if (svg.open(QIODevice::ReadOnly))
            return svg.readAll();
    }
    if (symbolName == "wrench.and.screwdriver") {
        QFile svg(QStringLiteral(":/icons/wrench.svg"));
        if (svg.open(QIODevice::ReadOnly))
            return svg.readAll();
    }
    return {};
}

QByteArray tinted(QByteArray svg, const QColor& color, const char* strokeWidth = nullptr) {
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    if (strokeWidth)
        svg.replace("stroke-width=\"2\"", QByteArray("stroke-width=\"") + strokeWidth + "\"");
    return svg;
}

QPixmap render(const std::vector<QByteArray>& layers, int logicalSize, qreal dpr) {
    QPixmap pixmap(QSize(logicalSize, logicalSize) * dpr);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QByteArray& layer : layers) {
        QSvgRenderer renderer(layer);
        renderer.render(&painter, QRectF(0, 0, logicalSize, logicalSize));
    }
    return pixmap;
}

// Renders at whatever size the icon is asked for, so it stays sharp on tall panels and at 2x.
class SymbolIconEngine : public QIconEngine {
public:
    explicit SymbolIconEngine(std::vector<QByteArray> layers) : layers(std::move(layers)) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        for (const QByteArray& layer : layers) {
            QSvgRenderer renderer(layer);
            renderer.render(painter, rect);
        }
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return render(layers, std::max(1, std::min(size.width(), size.height())), 1.0);
    }
    QIconEngine* clone() const override { return new SymbolIconEngine(layers); }

private:
    std::vector<QByteArray> layers;
};

} // namespace

QIcon symbolIcon(std::string_view symbolName, const QColor& color) {
    const QByteArray svg = svgSource(symbolName);
    if (svg.isEmpty())
        return {};
    return QIcon(new SymbolIconEngine({tinted(svg, color)}));
}

QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio) {
    const QByteArray svg = svgSource(symbolName);
    if (svg.isEmpty())
        return {};
    return render({tinted(svg, color)}, logicalSize, devicePixelRatio);
}

QPixmap outlinedSymbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                             qreal devicePixelRatio) {
    const QByteArray svg = svgSource(symbolName);
    if (svg.isEmpty())
        return {};
    return render({tinted(svg, QColor(20, 20, 20), "3.6"), tinted(svg, color, "2")}, logicalSize,
                  devicePixelRatio);
}

QIcon applicationTraySymbol() {
    const QByteArray svg = svgSource("heart.text.clipboard");
    return QIcon(new SymbolIconEngine(
        {tinted(svg, QColor(20, 20, 20), "3.6"), tinted(svg, Qt::white, "2")}));
}
