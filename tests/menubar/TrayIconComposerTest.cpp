#include "views/menubar/TrayIconComposer.h"
#include "ImageProbe.h"
#include "PinnedFonts.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QPainter>

#include <optional>

namespace {

const QColor blue(0x00, 0x00, 0xFF);
// On the sparkline's centre line at 22 px: see GraphOnlySparklineFillsTheWidth.
constexpr double onCentre = 0.5;

MenuBarReadings readings() {
    MenuBarReadings r;
    r.cpuUsage = 0.42;
    r.cpuHistory = std::vector<double>(60, onCentre);
    r.memoryUsed = 11.0;
    r.memoryTotal = 16.0;
    r.memoryHistory.resize(60);
    for (std::size_t i = 0; i < 60; ++i)
        r.memoryHistory[i] = 0.4 + 0.3 * static_cast<double>(i % 12) / 12.0;
    r.diskUsed = 64.0;
    r.diskTotal = 100.0;
    r.networkBytesIn = 1572864.0;
    r.networkBytesOut = 524288.0;
    r.networkInHistory.resize(60);
    r.networkOutHistory.resize(60);
    for (std::size_t i = 0; i < 60; ++i) {
        r.networkInHistory[i] = static_cast<double>((i * 37) % 11) * 150000.0;
        r.networkOutHistory[i] = static_cast<double>((i * 17) % 7) * 50000.0;
    }
    r.temperature = 78.0;
    r.gpuTemperature = 52.0;
    r.temperatureHistory = std::vector<double>(60, 70.0);
    r.temperatureHistory.back() = 78.0;
    r.fanSpeed = 2400;
    r.fanMaxSpeed = 6000;
    return r;
}

MenuBarAppearance appearance(PersistentStyle style, bool icons = true) {
    MenuBarAppearance a;
    a.style = style;
    a.showIcons = icons;
    a.cpuColor = blue;
    return a;
}

class TrayIconComposerTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto fonts = pinnedFonts();
        ASSERT_TRUE(fonts) << "DejaVu Sans Mono and Symbola must be installed "
                              "(fonts-dejavu-core, fonts-symbola)";
        composer.emplace(*fonts);
    }
    QImage compose(SensorType type, const MenuBarAppearance& look, int side, qreal ratio = 1.0,
                   const MenuBarReadings& values = readings()) const {
        return composer->compose(buildButtonModel(type, values, look), side, ratio);
    }
    std::optional<TrayIconComposer> composer;
};

TEST_F(TrayIconComposerTest, IconIsSquareAtTheAskedSizeAndRatio) {
    const auto look = appearance(PersistentStyle::graphAndText);
    for (const auto& [side, ratio, physical] :
         {std::tuple{22, 1.0, 22}, {44, 1.0, 44}, {22, 2.0, 44}, {16, 1.5, 24}}) {
        const QImage image = compose(SensorType::cpu, look, side, ratio);
        EXPECT_EQ(image.size(), QSize(physical, physical));
        EXPECT_EQ(image.devicePixelRatio(), ratio);
    }
    EXPECT_TRUE(compose(SensorType::cpu, look, 0).isNull());
    EXPECT_TRUE(compose(SensorType::cpu, look, 22, 0.0).isNull());
}

TEST_F(TrayIconComposerTest, TextOnlyFillsTheWidthInTheItemColour) {
    for (int side : {22, 44}) {
        for (bool icons : {false, true}) {
            for (SensorType type : allCases<SensorType>()) {
                SCOPED_TRACE(std::string(rawValue(type)) + " at " + std::to_string(side) +
                             (icons ? " with icon" : ""));
                const auto look = appearance(PersistentStyle::textOnly, icons);
                const QImage image = compose(type, look, side);
                const QRect ink = contentBounds(image, 60);
                ASSERT_FALSE(ink.isEmpty());
                EXPECT_GE(std::max(ink.width(), ink.height()), side * 3 / 4);
                const ButtonModel model = buildButtonModel(type, readings(), look);
                const QColor colour = model.title.back().colour;
                bool found = false;
                for (int y = ink.top(); y <= ink.bottom() && !found; ++y)
                    for (int x = ink.left(); x <= ink.right() && !found; ++x)
                        found = looksLike(image.pixelColor(x, y), colour, 160, 8);
                EXPECT_TRUE(found) << "no solid pixel of the item colour";
            }
        }
    }
}

TEST_F(TrayIconComposerTest, GraphOnlySparklineFillsTheWidthInItsProportions) {
    // 40 : 18 across 22 px is 22 × 9.9, centred: rows 6.05 to 15.95. A value at half the
    // scale puts the line at 15.95 - (7.9 × 0.5 + 1) = 11.
    const QImage image = compose(SensorType::cpu, appearance(PersistentStyle::graphOnly), 22);
    for (int x : {0, 11, 21}) {
        SCOPED_TRACE(x);
        int strongestRow = -1;
        int strongest = -1;
        for (int y = 0; y < 22; ++y) {
            const int alpha = image.pixelColor(x, y).alpha();
            if (alpha > strongest) {
                strongest = alpha;
                strongestRow = y;
            }
        }
        EXPECT_NEAR(strongestRow, 10.5, 0.6);
        EXPECT_NEAR(image.pixelColor(x, 14).alpha(), 77, 2) << "fill";
        EXPECT_EQ(image.pixelColor(x, 4).alpha(), 0) << "above the graph";
        EXPECT_EQ(image.pixelColor(x, 17).alpha(), 0) << "below the graph";
    }
}

TEST_F(TrayIconComposerTest, GraphOnlyGaugeFillsTheSquareFromTwelveClockwise) {
    MenuBarReadings values = readings();
    values.diskUsed = 12.5; // an eighth
    for (int side : {22, 44}) {
        SCOPED_TRACE(side);
        const auto look = appearance(PersistentStyle::graphOnly);
        const QImage image = compose(SensorType::disk, look, side, 1.0, values);
        const qreal unit = side / 22.0;
        const qreal radius = (side - 2.0 * unit) / 2.0;
        const QPointF centre(side / 2.0, side / 2.0);
        auto at = [&](double degrees) {
            const double radians = degrees * M_PI / 180.0;
            return colourAt(
                image, centre + QPointF(radius * std::sin(radians), -radius * std::cos(radians)));
        };
        EXPECT_TRUE(looksLike(at(22.5), look.diskColor, 150, 60));
        EXPECT_LT(at(337.5).alpha(), 120) << "counter-clockwise of twelve is only the track";
        EXPECT_LT(at(180.0).alpha(), 120);
        EXPECT_GT(at(180.0).alpha(), 30) << "the track runs all the way round";
        const QRect ink = contentBounds(image, 30);
        EXPECT_GE(ink.width(), side - 2);
        EXPECT_GE(ink.height(), side - 2);
    }
}

TEST_F(TrayIconComposerTest, GraphAndTextPutsTheValueAboveTheGraph) {
    for (int side : {22, 44}) {
        SCOPED_TRACE(side);
        const QImage image =
            compose(SensorType::cpu, appearance(PersistentStyle::graphAndText), side);
        // The graph is 40 : 18 at full width, resting on the bottom edge.
        const int graphTop = static_cast<int>(side - side * 18.0 / 40.0);
        const QRect text = contentBounds(image.copy(0, 0, side, graphTop - 1), 60);
        ASSERT_FALSE(text.isEmpty()) << "no text above the graph";
        EXPECT_GE(text.width(), side / 2);
        EXPECT_NEAR(image.pixelColor(side / 2, side - 2).alpha(), 77, 3) << "graph fill";
        EXPECT_TRUE(looksLike(image.pixelColor(side / 2, side - 2), blue, 70, 6));
    }
}

TEST_F(TrayIconComposerTest, DoubleRatioDrawsWhatTwiceTheSizeDraws) {
    for (PersistentStyle style :
         {PersistentStyle::graphOnly, PersistentStyle::textOnly, PersistentStyle::graphAndText}) {
        SCOPED_TRACE(rawValue(style));
        const auto look = appearance(style);
        const QRect sharp = contentBounds(compose(SensorType::memory, look, 22, 2.0), 60);
        const QRect large = contentBounds(compose(SensorType::memory, look, 44, 1.0), 60);
        EXPECT_NEAR(sharp.left(), large.left(), 1);
        EXPECT_NEAR(sharp.top(), large.top(), 1);
        EXPECT_NEAR(sharp.right(), large.right(), 1);
        EXPECT_NEAR(sharp.bottom(), large.bottom(), 1);
    }
}

TEST_F(TrayIconComposerTest, UndrawableGraphSizeLeavesTheTextAlone) {
    MenuBarAppearance look = appearance(PersistentStyle::graphOnly);
    look.graphWidth = -3.0;
    EXPECT_TRUE(fullyTransparent(compose(SensorType::cpu, look, 22)));
    look.style = PersistentStyle::graphAndText;
    const QImage image = compose(SensorType::cpu, look, 22);
    EXPECT_GE(contentBounds(image, 60).height(), 8) << "the text takes the whole square";
}

// Writes a sheet of every item in every style at 22 and 44 px, on a dark and a light panel,
// for people to look at.
TEST_F(TrayIconComposerTest, WritesASheetOfEveryItem) {
    const QString directory = QStringLiteral(VORLUNE_BINARY_DIR "/screenshots/menubar");
    ASSERT_TRUE(QDir().mkpath(directory));
    const PersistentStyle styles[] = {PersistentStyle::textOnly, PersistentStyle::graphOnly,
                                      PersistentStyle::graphAndText};
    const auto types = allCases<SensorType>();
    for (int side : {22, 44}) {
        const int cell = side + 6;
        QImage sheet(cell * static_cast<int>(types.size()), cell * 6, QImage::Format_RGB32);
        QPainter painter(&sheet);
        for (int row = 0; row < 6; ++row) {
            const bool dark = row < 3;
            painter.fillRect(0, row * cell, sheet.width(), cell,
                             dark ? QColor(0x2B, 0x2B, 0x2B) : QColor(0xEE, 0xEE, 0xEE));
            MenuBarAppearance look = appearance(styles[row % 3]);
            look.cpuColor = MenuBarAppearance{}.cpuColor;
            for (std::size_t column = 0; column < types.size(); ++column) {
                const QImage icon = compose(types[column], look, side);
                painter.drawImage(static_cast<int>(column) * cell + 3, row * cell + 3, icon);
            }
        }
        painter.end();
        const QString path = directory + QStringLiteral("/tray-icons-%1px.png").arg(side);
        EXPECT_TRUE(sheet.save(path)) << path.toStdString();
        const QImage zoomed =
            sheet.scaled(sheet.size() * 4, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        EXPECT_TRUE(
            zoomed.save(directory + QStringLiteral("/tray-icons-%1px-zoom4x.png").arg(side)));
        EXPECT_TRUE(compose(SensorType::network, appearance(PersistentStyle::textOnly), side)
                        .save(directory + QStringLiteral("/network-text-%1px.png").arg(side)));
    }
}

} // namespace
