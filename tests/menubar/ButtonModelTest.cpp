#include "views/menubar/ButtonModel.h"
#include "views/menubar/MenuBarColor.h"
#include "views/menubar/MenuBarValueText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

MenuBarReadings sampleReadings() {
    MenuBarReadings readings;
    readings.cpuUsage = 0.42;
    readings.cpuHistory = std::vector<double>(60, 0.42);
    readings.memoryUsed = 8.0;
    readings.memoryTotal = 16.0;
    readings.memoryHistory = std::vector<double>(60, 0.5);
    readings.diskUsed = 25.0;
    readings.diskTotal = 100.0;
    readings.networkBytesIn = 2048.0;
    readings.networkBytesOut = 1023.0;
    readings.networkInHistory = std::vector<double>(60, 100.0);
    readings.networkOutHistory = std::vector<double>(60, 100.0);
    readings.temperature = 60.0;
    readings.gpuTemperature = 55.0;
    readings.temperatureHistory = std::vector<double>(60, 60.0);
    readings.fanSpeed = 3000;
    readings.fanMaxSpeed = 6000;
    return readings;
}

std::vector<TitleRun::Kind> kindsOf(const ButtonModel& model) {
    std::vector<TitleRun::Kind> kinds;
    for (const TitleRun& run : model.title)
        kinds.push_back(run.kind);
    return kinds;
}

using Kind = TitleRun::Kind;

TEST(ButtonModel, StylesDecideTitleImageAndPosition) {
    const struct {
        PersistentStyle style;
        bool showIcons;
        SensorType type;
        std::vector<Kind> runs;
        std::vector<QString> texts;
        bool image;
        bool leading;
    } cases[] = {
        {PersistentStyle::graphOnly, true, SensorType::cpu, {}, {}, true, false},
        {PersistentStyle::graphOnly, false, SensorType::cpu, {}, {}, true, false},
        {PersistentStyle::textOnly,
         true,
         SensorType::cpu,
         {Kind::icon, Kind::value},
         {QString::fromUtf8("\u2699 "), "42%"},
         false,
         false},
        {PersistentStyle::textOnly, false, SensorType::cpu, {Kind::value}, {"42%"}, false, false},
        {PersistentStyle::textOnly,
         true,
         SensorType::network,
         {Kind::value},
         {QString::fromUtf8("\u21932K \u21911023B")},
         false,
         false},
        {PersistentStyle::textOnly,
         true,
         SensorType::cpuTemp,
         {Kind::icon, Kind::value},
         {QString::fromUtf8("\U0001F321 "), QString::fromUtf8("60\u00B0C")},
         false,
         false},
        {PersistentStyle::graphAndText, true, SensorType::cpu, {Kind::value}, {" 42%"}, true, true},
        {PersistentStyle::graphAndText,
         false,
         SensorType::fan,
         {Kind::value},
         {" 3000"},
         true,
         true},
    };
    const MenuBarReadings readings = sampleReadings();
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(rawValue(c.style)) + " icons " + (c.showIcons ? "on " : "off ") +
                     std::string(rawValue(c.type)));
        MenuBarAppearance appearance;
        appearance.style = c.style;
        appearance.showIcons = c.showIcons;
        const ButtonModel model = buildButtonModel(c.type, readings, appearance);
        EXPECT_EQ(model.style, c.style);
        EXPECT_EQ(kindsOf(model), c.runs);
        for (std::size_t i = 0; i < std::min(model.title.size(), c.texts.size()); ++i)
            EXPECT_EQ(model.title[i].text, c.texts[i]);
        EXPECT_EQ(model.image.has_value(), c.image);
        EXPECT_EQ(model.imagePosition == ImagePosition::leading, c.leading);
        EXPECT_EQ(model.toolTip, QString::fromUtf8(rawValue(c.type).data()) + ": " +
                                     menuBarValueText(c.type, readings));
    }
}

TEST(ButtonModel, RunsAndGraphTakeTheItemColour) {
    MenuBarReadings readings = sampleReadings();
    readings.temperature = 80.0;
    MenuBarAppearance appearance;
    appearance.style = PersistentStyle::graphAndText;
    const ButtonModel hot = buildButtonModel(SensorType::cpuTemp, readings, appearance);
    ASSERT_TRUE(hot.image);
    EXPECT_EQ(hot.image->colour, MenuBarColors::warm);
    for (const TitleRun& run : hot.title)
        EXPECT_EQ(run.colour, MenuBarColors::warm);

    appearance.style = PersistentStyle::textOnly;
    const ButtonModel cpu = buildButtonModel(SensorType::cpu, readings, appearance);
    for (const TitleRun& run : cpu.title)
        EXPECT_EQ(run.colour, appearance.cpuColor);
}

TEST(ButtonModel, EachTypeDrawsItsGraph) {
    MenuBarReadings readings = sampleReadings();
    readings.networkInHistory.back() = 5000.0;
    readings.networkOutHistory.back() = 9000.0;
    readings.temperatureHistory.back() = 70.0;
    MenuBarAppearance appearance;
    appearance.style = PersistentStyle::graphOnly;
    appearance.graphWidth = 30.0;
    appearance.graphHeight = 16.0;

    const auto sparkline = MenuBarGraph::Kind::sparkline;
    const auto gauge = MenuBarGraph::Kind::ringGauge;
    const struct {
        SensorType type;
        MenuBarGraph::Kind kind;
        const std::vector<double>* history; // sparklines only
        double scaleOrFraction;
    } cases[] = {
        {SensorType::cpu, sparkline, &readings.cpuHistory, 1.0},
        {SensorType::memory, sparkline, &readings.memoryHistory, 1.0},
        {SensorType::disk, gauge, nullptr, 0.25},
        {SensorType::networkIn, sparkline, &readings.networkInHistory, 5000.0},
        {SensorType::networkOut, sparkline, &readings.networkOutHistory, 9000.0},
        // Drawn from downloads on the scale of both directions.
        {SensorType::network, sparkline, &readings.networkInHistory, 9000.0},
        {SensorType::cpuTemp, sparkline, &readings.temperatureHistory, 110.0},
        {SensorType::gpuTemp, gauge, nullptr, 55.0 / 110.0},
        {SensorType::fan, gauge, nullptr, 0.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(rawValue(c.type));
        const ButtonModel model = buildButtonModel(c.type, readings, appearance);
        ASSERT_TRUE(model.image);
        const MenuBarGraph& graph = *model.image;
        EXPECT_EQ(graph.kind, c.kind);
        EXPECT_EQ(graph.width, 30.0);
        EXPECT_EQ(graph.height, 16.0);
        if (c.kind == sparkline) {
            EXPECT_EQ(graph.samples, std::vector<double>(c.history->end() - 30, c.history->end()));
            EXPECT_EQ(graph.scaleMaximum, c.scaleOrFraction);
        } else {
            EXPECT_DOUBLE_EQ(graph.fraction, c.scaleOrFraction);
        }
    }
}

TEST(ButtonModel, NetworkScaleIsAtLeastOneAndFanFractionMayBeUndefined) {
    MenuBarReadings readings;
    MenuBarAppearance appearance;
    appearance.style = PersistentStyle::graphOnly;
    for (SensorType type : {SensorType::networkIn, SensorType::networkOut, SensorType::network})
        EXPECT_EQ(buildButtonModel(type, readings, appearance).image->scaleMaximum, 1.0);

    readings.fanMaxSpeed = 0;
    readings.fanSpeed = 1200;
    EXPECT_TRUE(
        std::isinf(buildButtonModel(SensorType::fan, readings, appearance).image->fraction));
    readings.fanSpeed = 0;
    EXPECT_TRUE(
        std::isnan(buildButtonModel(SensorType::fan, readings, appearance).image->fraction));
}

TEST(ButtonModel, GraphImageIsThePartsPictureInPoints) {
    MenuBarReadings readings = sampleReadings();
    MenuBarAppearance appearance;
    appearance.style = PersistentStyle::graphOnly;
    const QImage line = buildButtonModel(SensorType::cpu, readings, appearance).image->image();
    EXPECT_EQ(line.size(), QSize(40, 18));
    EXPECT_GT(line.pixelColor(20, 17).alpha(), 0);
    const QImage ring = buildButtonModel(SensorType::disk, readings, appearance).image->image(2.0);
    EXPECT_EQ(ring.size(), QSize(36, 36));
}

} // namespace
