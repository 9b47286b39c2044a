#include "views/menubar/MenuBarColor.h"
#include "views/menubar/Sparkline.h"
#include "views/menubar/TrayIconComposer.h"

#include <gtest/gtest.h>

#include <QFontDatabase>

#include <cmath>
#include <numbers>
#include <optional>
#include <tuple>

namespace {

const QColor blue(0x00, 0x00, 0xFF);

/// The smallest rectangle holding every pixel with at least `minimumAlpha`; empty if none.
QRect inkBounds(const QImage& image, int minimumAlpha = 1) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() >= minimumAlpha)
                bounds = bounds.united(QRect(x, y, 1, 1));
    return bounds;
}

bool looksLike(const QColor& colour, const QColor& expected, int minimumAlpha = 200,
               int tolerance = 40) {
    return colour.alpha() >= minimumAlpha && std::abs(colour.red() - expected.red()) <= tolerance &&
           std::abs(colour.green() - expected.green()) <= tolerance &&
           std::abs(colour.blue() - expected.blue()) <= tolerance;
}

/// The row of column `x` a sparkline's stroke covers most: it is more opaque than the fill.
int strokeRow(const QImage& image, int x) {
    int row = 0;
    for (int y = 1; y < image.height(); ++y)
        if (image.pixelColor(x, y).alpha() > image.pixelColor(x, row).alpha())
            row = y;
    return row;
}

// At 40 × 18 points with a 1-point line, a sample at share s of the scale has the stroke's
// centre at y = 17 - 16 s: this share puts it in the middle of row 9.
constexpr double row9 = 0.46875;

TEST(Sparkline, EachSampleSitsAtItsShareOfTheScale) {
    std::vector<double> spike(40, row9);
    spike[20] = 1.0;
    std::vector<double> recent(50, 1.0); // older than the width: would pull the line up
    recent.insert(recent.end(), 40, row9);
    const struct {
        const char* name;
        std::vector<double> history;
        double scale;
        std::vector<std::pair<int, int>> columnRows;
    } cases[] = {
        {"flat", std::vector<double>(60, row9), 1.0, {{0, 9}, {20, 9}, {39, 9}}},
        {"flat on a scale of 2", std::vector<double>(60, 2 * row9), 2.0, {{0, 9}, {39, 9}}},
        {"a spike", spike, 1.0, {{5, 9}, {20, 1}, {34, 9}}},
        {"two samples span the width", {0.0, 1.0}, 1.0, {{0, 16}, {20, 8}, {39, 1}}},
        {"only the last width samples", recent, 1.0, {{0, 9}, {39, 9}}},
        {"above the scale stays at the top", {5.0, INFINITY, 5.0}, 1.0, {{20, 1}}},
        {"negative and NaN lie at the bottom", {-3.0, NAN, -3.0}, 1.0, {{20, 17}}},
        {"a scale of 0 has a floor", std::vector<double>(5, 0.001 * row9), 0.0, {{20, 9}}},
        {"one sample draws nothing", {1.0}, 1.0, {}},
    };
    for (const auto& c : cases) {
        const QImage image = sparklineImage(c.history, c.scale, blue, 40.0, 18.0);
        ASSERT_EQ(image.size(), QSize(40, 18)) << c.name;
        for (const auto& [x, row] : c.columnRows)
            EXPECT_EQ(strokeRow(image, x), row) << c.name << " at column " << x;
        EXPECT_EQ(inkBounds(image).isEmpty(), c.columnRows.empty()) << c.name;
    }

    // Under the line a 0.3 fill down to the bottom, above it nothing.
    const QImage flat = sparklineImage(cases[0].history, 1.0, blue, 40.0, 18.0);
    EXPECT_NEAR(flat.pixelColor(30, 14).alpha(), 77, 1);
    EXPECT_EQ(flat.pixelColor(30, 17), flat.pixelColor(30, 14));
    EXPECT_EQ(inkBounds(flat).top(), 9);
    // A garbage size must not ask for gigabytes.
    for (double bad : {0.0, -40.0, double(NAN), double(INFINITY), 1e9})
        EXPECT_TRUE(sparklineImage(cases[0].history, 1.0, blue, bad, 18.0).isNull()) << bad;
}

TEST(MenuBarGraph, EachTypeHasItsScaleOrFraction) {
    MenuBarReadings readings{.diskUsed = 25.0, .diskTotal = 100.0, .gpuTemperature = 55.0};
    readings.networkInHistory = {1.0, 60.0, 2.0};
    readings.networkOutHistory = {120.0, 3.0};
    readings.fanSpeed = 3000; // of 6000
    MenuBarAppearance look;
    look.style = PersistentStyle::graphOnly;
    using S = SensorType;
    const std::pair<SensorType, double> cases[] = {
        {S::cpu, 1.0},        {S::memory, 1.0},       {S::disk, 0.25},
        {S::networkIn, 60.0}, {S::networkOut, 120.0}, {S::network, 120.0},
        {S::cpuTemp, 110.0},  {S::gpuTemp, 0.5},      {S::fan, 0.5},
    };
    for (const auto& [type, expected] : cases) {
        const MenuBarGraph graph = buildButtonModel(type, readings, look).image.value();
        EXPECT_EQ(graph.kind == MenuBarGraph::Kind::ringGauge ? graph.fraction : graph.scaleMaximum,
                  expected)
            << rawValue(type);
    }
    // The combined item draws downloads only, on the scale of both directions.
    EXPECT_EQ(buildButtonModel(S::network, readings, look).image->samples,
              readings.networkInHistory);
}

class TrayIconTest : public ::testing::Test {
protected:
    // Fonts loaded from their files, so measured pixels do not depend on the machine's
    // font configuration.
    void SetUp() override {
        TrayIconFonts fonts;
        for (auto [font, file] : {std::pair{&fonts.value, "dejavu/DejaVuSansMono.ttf"},
                                  {&fonts.icon, "ancient-scripts/Symbola_hint.ttf"}}) {
            const int id = QFontDatabase::addApplicationFont(
                QStringLiteral("/usr/share/fonts/truetype/") + QLatin1String(file));
            ASSERT_GE(id, 0) << file << ": needs fonts-dejavu-core and fonts-symbola";
            *font = QFont(QFontDatabase::applicationFontFamilies(id).value(0));
        }
        composer.emplace(fonts);
    }
    static MenuBarAppearance look(PersistentStyle style, bool icons = true) {
        MenuBarAppearance look;
        look.style = style;
        look.showIcons = icons;
        look.cpuColor = blue;
        return look;
    }
    QImage compose(SensorType type, const MenuBarAppearance& look, int side, qreal ratio = 1.0) {
        return composer->compose(buildButtonModel(type, readings, look), side, ratio);
    }
    // The CPU history at half the scale is on the sparkline's centre line.
    const MenuBarReadings readings{.cpuUsage = 0.42,
                                   .cpuHistory = std::vector<double>(60, 0.5),
                                   .networkBytesIn = 1572864.0,
                                   .networkBytesOut = 524288.0,
                                   .temperature = 78.0,
                                   .gpuTemperature = 65.0,
                                   .fanSpeed = 2400};
    std::optional<TrayIconComposer> composer;
};

/// Heights of the runs of rows holding ink of at least `alpha`: one per line of text.
std::vector<int> inkLines(const QImage& image, int alpha = 110) {
    std::vector<int> lines;
    bool inLine = false;
    for (int y = 0; y < image.height(); ++y) {
        bool ink = false;
        for (int x = 0; x < image.width() && !ink; ++x)
            ink = image.pixelColor(x, y).alpha() >= alpha;
        if (ink && !inLine)
            lines.push_back(0);
        if (ink)
            ++lines.back();
        inLine = ink;
    }
    return lines;
}

// The narrowest and widest value of each kind draw their digits equally tall, and tall
// enough to read at 22 px; the combined network item on two lines.
TEST_F(TrayIconTest, TextKeepsOneLegibleSizeWhateverTheValue) {
    using S = SensorType;
    const struct {
        S type;
        MenuBarReadings narrow, wide;
        int lines, minimumAt22;
    } cases[] = {
        {S::cpu, {.cpuUsage = 0.05}, {.cpuUsage = 1.0}, 2, 9},
        {S::memory,
         {.memoryUsed = 1, .memoryTotal = 16},
         {.memoryUsed = 16, .memoryTotal = 16},
         2,
         9},
        {S::disk, {.diskUsed = 1, .diskTotal = 100}, {.diskUsed = 100, .diskTotal = 100}, 2, 9},
        {S::cpuTemp, {.temperature = 5}, {.temperature = 100}, 2, 9},
        {S::gpuTemp, {.gpuTemperature = 5}, {.gpuTemperature = 100}, 2, 9},
        {S::networkIn, {.networkBytesIn = 0}, {.networkBytesIn = 99.9 * 1048576}, 2, 7},
        {S::network, {}, {.networkBytesIn = 99.9 * 1048576, .networkBytesOut = 1023 * 1024}, 2, 7},
        {S::fan, {.fanSpeed = 800}, {.fanSpeed = 8888}, 1, 7},
    };
    for (const auto& c : cases) {
        for (int side : {22, 44}) {
            SCOPED_TRACE(std::string(rawValue(c.type)) + " at " + std::to_string(side));
            MenuBarAppearance text = look(PersistentStyle::textOnly);
            text.memoryColor = text.diskColor = text.networkColor = text.temperatureColor =
                text.fanColor = blue;
            const auto narrow =
                inkLines(composer->compose(buildButtonModel(c.type, c.narrow, text), side));
            const auto wide = composer->compose(buildButtonModel(c.type, c.wide, text), side);
            const auto wideLines = inkLines(wide);
            ASSERT_FALSE(narrow.empty());
            EXPECT_EQ(narrow.front(), wideLines.front()) << "the digits change size";
            if (side == 22) {
                EXPECT_EQ(wideLines.size(), std::size_t(c.lines));
                for (std::size_t i = 0; i < (c.lines == 2 && c.type == S::network ? 2u : 1u); ++i)
                    EXPECT_GE(wideLines[i], c.minimumAt22) << "line " << i;
            }
            // VORLUNE_SQUARES=<folder> keeps the pictures and prints the heights, to look at.
            if (const QString folder = qEnvironmentVariable("VORLUNE_SQUARES"); !folder.isEmpty()) {
                std::printf("%s %d: digits %d px, %zu lines\n", rawValue(c.type).data(), side,
                            wideLines.front(), wideLines.size());
                wide.save(QStringLiteral("%1/%2-%3.png").arg(folder).arg(int(c.type)).arg(side));
            }
        }
    }
}

// Drawn at twice the ratio: a logical-size mistake would fill only a quarter of the icon.
TEST_F(TrayIconTest, TextFillsTheSquareInTheItemColourWithTheIconWhenAsked) {
    for (int side : {22, 44}) {
        for (SensorType type : allCases<SensorType>()) {
            SCOPED_TRACE(std::string(rawValue(type)) + " at " + std::to_string(side));
            const QImage image = compose(type, look(PersistentStyle::textOnly), side, 2.0);
            const QRect ink = inkBounds(image, 60);
            EXPECT_GE(std::max(ink.width(), ink.height()), side * 3 / 2) << "does not fill";
            const QColor colour = menuBarColor(type, readings, look(PersistentStyle::textOnly));
            bool found = false;
            for (int y = ink.top(); y <= ink.bottom(); ++y)
                for (int x = ink.left(); x <= ink.right(); ++x)
                    found = found || looksLike(image.pixelColor(x, y), colour, 160, 8);
            EXPECT_TRUE(found) << "no solid pixel of the item colour";
            // The combined network item has no icon of its own, and below 32 px none is drawn.
            EXPECT_EQ(image == compose(type, look(PersistentStyle::textOnly, false), side, 2.0),
                      type == SensorType::network || side < 32);
        }
    }
}

TEST_F(TrayIconTest, GraphKeepsItsProportionsAcrossTheSquare) {
    // 40 : 18 across 22 px is 22 × 9.9, centred: rows 6.05 to 15.95. Half the scale puts
    // the line at 15.95 - (7.9 × 0.5 + 1) = 11.
    const QImage line = compose(SensorType::cpu, look(PersistentStyle::graphOnly), 22);
    for (int x : {0, 11, 21}) {
        EXPECT_NEAR(strokeRow(line, x), 10.5, 0.6) << x;
        EXPECT_TRUE(looksLike(line.pixelColor(x, 14), blue, 75, 6)) << x << " fill";
        EXPECT_EQ(line.pixelColor(x, 4).alpha() + line.pixelColor(x, 17).alpha(), 0) << x;
    }
}

TEST_F(TrayIconTest, GaugeFillsClockwiseFromTwelveOverAGreyTrack) {
    const std::tuple<double, double, bool> cases[] = {
        {0.0, 22.5, false},    {0.0, 180.0, false}, {0.125, 22.5, true}, {0.125, 337.5, false},
        {0.125, 90.0, false},  {0.5, 90.0, true},   {0.5, 150.0, true},  {0.5, 210.0, false},
        {0.5, 270.0, false},   {1.0, 180.0, true},  {1.0, 345.0, true},  {3.0, 345.0, true},
        {INFINITY, 300, true}, {NAN, 22.5, false},  {-0.5, 22.5, false},
    };
    for (const auto& [fraction, degrees, filled] : cases) {
        ButtonModel model{.style = PersistentStyle::graphOnly};
        model.image = MenuBarGraph{.kind = MenuBarGraph::Kind::ringGauge, .fraction = fraction};
        model.image->colour = blue;
        const QImage ring = composer->compose(model, 44);
        EXPECT_EQ(inkBounds(ring, 30), ring.rect()) << "fills the square";
        // On the centre line of the 4-pixel ring: (44 - 4) / 2 from the centre.
        const double radians = degrees * std::numbers::pi / 180.0;
        const QColor colour = ring.pixelColor(static_cast<int>(22.0 + 20.0 * std::sin(radians)),
                                              static_cast<int>(22.0 - 20.0 * std::cos(radians)));
        EXPECT_TRUE(filled ? looksLike(colour, blue, 220, 30)
                           : colour.alpha() < 80 &&
                                 looksLike(colour, MenuBarColors::gaugeTrack, 70, 3))
            << fraction << " at " << degrees;
    }
}

TEST_F(TrayIconTest, GraphAndTextPutsTheValueAboveTheGraph) {
    for (qreal ratio : {1.0, 2.0}) {
        const int side = static_cast<int>(22 * ratio);
        const QImage image =
            compose(SensorType::cpu, look(PersistentStyle::graphAndText), 22, ratio);
        ASSERT_EQ(image.size(), QSize(side, side));
        // The graph is 40 : 18 at full width, resting on the bottom edge.
        const int graphTop = static_cast<int>(side - side * 18.0 / 40.0);
        EXPECT_GE(inkBounds(image.copy(0, 0, side, graphTop - 1), 60).width(), side / 2) << side;
        EXPECT_TRUE(looksLike(image.pixelColor(side / 2, side - 1), blue, 70, 6)) << side;
    }
    // With a graph size that cannot be drawn, the text takes the whole square.
    MenuBarAppearance broken = look(PersistentStyle::graphAndText);
    broken.graphWidth = -3.0;
    EXPECT_GE(inkBounds(compose(SensorType::cpu, broken, 22), 60).height(), 8);
    broken.style = PersistentStyle::graphOnly;
    EXPECT_TRUE(inkBounds(compose(SensorType::cpu, broken, 22)).isEmpty());
}

} // namespace
