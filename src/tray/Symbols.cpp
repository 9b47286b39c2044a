#include "Symbols.h"

#include "SymbolPath.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPen>

#include <array>
#include <utility>
#include <vector>

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
    const auto file = [&]() -> const char* {
        for (const auto& [name, found] : symbolFiles)
            if (name == symbolName)
                return found;
        return symbolName == "wrench.and.screwdriver" ? "wrench" : nullptr;
    }();
    if (!file)
        return {};
    QFile svg(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(file)));
    return svg.open(QIODevice::ReadOnly) ? svg.readAll() : QByteArray();
}

// One pass of the icon's lines: Lucide draws them 2 units wide in a 24-unit box, with
// round ends and joins.
struct Stroke {
    QColor colour;
    qreal width = 2.0;
};

constexpr qreal viewBox = 24.0;
const QColor outlineColour(20, 20, 20);
constexpr qreal outlineWidth = 3.6;

void paintStrokes(QPainter& painter, const QPainterPath& lines, const std::vector<Stroke>& strokes,
                  const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.topLeft());
    painter.scale(rect.width() / viewBox, rect.height() / viewBox);
    for (const Stroke& stroke : strokes)
        painter.strokePath(
            lines, QPen(stroke.colour, stroke.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

QPixmap render(const QPainterPath& lines, const std::vector<Stroke>& strokes, int logicalSize,
               qreal dpr) {
    QPixmap pixmap(QSize(logicalSize, logicalSize) * dpr);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paintStrokes(painter, lines, strokes, QRectF(0, 0, logicalSize, logicalSize));
    return pixmap;
}

// Renders at whatever size the icon is asked for, so it stays sharp on tall panels and at 2x.
class SymbolIconEngine : public QIconEngine {
public:
    SymbolIconEngine(QPainterPath lines, std::vector<Stroke> strokes)
        : lines(std::move(lines)), strokes(std::move(strokes)) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        paintStrokes(*painter, lines, strokes, rect);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return render(lines, strokes, std::max(1, std::min(size.width(), size.height())), 1.0);
    }
    QIconEngine* clone() const override { return new SymbolIconEngine(lines, strokes); }

private:
    QPainterPath lines;
    std::vector<Stroke> strokes;
};

} // namespace

QPainterPath symbolLines(std::string_view symbolName) {
    return symbolPath(svgSource(symbolName));
}

QIcon symbolIcon(std::string_view symbolName, const QColor& color) {
    QPainterPath lines = symbolLines(symbolName);
    if (lines.isEmpty())
        return {};
    return QIcon(new SymbolIconEngine(std::move(lines), {{color}}));
}

QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio) {
    const QPainterPath lines = symbolLines(symbolName);
    if (lines.isEmpty())
        return {};
    return render(lines, {{color}}, logicalSize, devicePixelRatio);
}

QPixmap outlinedSymbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                             qreal devicePixelRatio) {
    const QPainterPath lines = symbolLines(symbolName);
    if (lines.isEmpty())
        return {};
    return render(lines, {{outlineColour, outlineWidth}, {color}}, logicalSize, devicePixelRatio);
}

QIcon applicationTraySymbol() {
    return QIcon(new SymbolIconEngine(symbolLines("heart.text.clipboard"),
                                      {{outlineColour, outlineWidth}, {Qt::white}}));
}
