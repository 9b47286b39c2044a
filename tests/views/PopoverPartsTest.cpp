// The pure parts of the popovers: texts, memory pressure, sensor grouping, the
// queued refresh, and the pixels of the small graph widgets.
#include "PopoverRig.h"

#include "views/menubar/MenuBarColor.h"
#include "views/popovers/ColoredProgressBar.h"
#include "views/popovers/CoreBarsView.h"
#include "views/popovers/MemoryPressure.h"
#include "views/popovers/PopoverStyle.h"
#include "views/popovers/PopoverText.h"
#include "views/popovers/QueuedRefresh.h"
#include "views/popovers/SensorGroups.h"
#include "views/popovers/SparklineView.h"

#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

TEST(PopoverText, FormatsReadings) {
    struct Case {
        QString actual;
        QString expected;
    };
    const Case cases[] = {
        {percentText(0.425), "42%"},
        {percentText(0.999), "99%"},
        {percentText(1.0), "100%"},
        {percentText(nan), "0%"},
        {popoverRateText(0), "0 B/s"},
        {popoverRateText(1023), "1023 B/s"},
        {popoverRateText(1024), "1 KB/s"},
        {popoverRateText(1048575), "1024 KB/s"},
        {popoverRateText(1048576), "1.0 MB/s"},
        {popoverRateText(1572864), "1.5 MB/s"},
        {popoverRateText(inf), "0 B/s"},
        {temperatureText(0), "—"},
        {temperatureText(-5), "—"},
        {temperatureText(nan), "—"},
        {temperatureText(0.5), "0°C"},
        {temperatureText(74.9), "74°C"},
        {temperatureText(90), "90°C"},
        {rpmText(2400.7), "2400 RPM"},
        {rpmText(0), "0 RPM"},
        {updateIntervalText(2.0), "Updating every 2s"},
        {updateIntervalText(5.9), "Updating every 5s"},
        {updateIntervalText(inf), "Updating every 0s"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.actual, c.expected);
}

TEST(PopoverText, WholeNumberTruncatesAndNeverOverflows) {
    EXPECT_EQ(wholeNumber(42.9), 42);
    EXPECT_EQ(wholeNumber(-42.9), -42);
    EXPECT_EQ(wholeNumber(nan), 0);
    EXPECT_EQ(wholeNumber(-inf), 0);
    EXPECT_EQ(wholeNumber(1e300), 0);
}

TEST(MemoryPressure, LevelsChangeAtSeventyAndNinetyPercent) {
    struct Case {
        double fraction;
        MemoryPressure level;
        const char* text;
    };
    const Case cases[] = {
        {0.0, MemoryPressure::normal, "Normal"},
        {0.6999, MemoryPressure::normal, "Normal"},
        {0.70, MemoryPressure::moderate, "Moderate"},
        {7.0 / 10.0, MemoryPressure::moderate, "Moderate"},
        {0.8999, MemoryPressure::moderate, "Moderate"},
        {0.90, MemoryPressure::high, "High"},
        {9.0 / 10.0, MemoryPressure::high, "High"},
        {1.0, MemoryPressure::high, "High"},
        {nan, MemoryPressure::normal, "Normal"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(memoryPressure(c.fraction), c.level) << c.fraction;
        EXPECT_EQ(memoryPressureText(memoryPressure(c.fraction)), c.text) << c.fraction;
    }
    EXPECT_EQ(memoryPressureColor(MemoryPressure::normal), PopoverStyle::green);
    EXPECT_EQ(memoryPressureColor(MemoryPressure::moderate), MenuBarColors::warm);
    EXPECT_EQ(memoryPressureColor(MemoryPressure::high), MenuBarColors::hot);
}

std::vector<std::string> labelsOf(const std::vector<TemperatureSensor>& sensors) {
    std::vector<std::string> labels;
    for (const auto& sensor : sensors)
        labels.push_back(sensor.label);
    return labels;
}

TEST(SensorGroups, SortsByCpuThenGpuInTheLabelKeepingOrder) {
    const std::vector<TemperatureSensor> sensors{
        {"a", "GPU Edge", 50},     {"b", "CPU Die", 60},      {"c", "SSD", 40},
        {"d", "CPU Core 1", 58},   {"e", "cpu lowercase", 1}, {"f", "CPU/GPU shared", 70},
        {"g", "Board sensor", 30}, {"h", "GPU Hotspot", 66},
    };
    const SensorGroups groups = groupSensors(sensors);
    EXPECT_EQ(labelsOf(groups.cpu),
              (std::vector<std::string>{"CPU Die", "CPU Core 1", "CPU/GPU shared"}));
    EXPECT_EQ(labelsOf(groups.gpu), (std::vector<std::string>{"GPU Edge", "GPU Hotspot"}));
    EXPECT_EQ(labelsOf(groups.other),
              (std::vector<std::string>{"SSD", "cpu lowercase", "Board sensor"}));

    const SensorGroups none = groupSensors({});
    EXPECT_TRUE(none.cpu.empty() && none.gpu.empty() && none.other.empty());
}

TEST(QueuedRefresh, MergesAllNoticesOfATickIntoOneReadAfterThePublish) {
    PopoverRig rig;
    std::vector<std::size_t> fanCountsSeen;
    QueuedRefresh refresh([&] { fanCountsSeen.push_back(rig.monitor.fans().size()); }, nullptr);
    refresh.watch(&rig.monitor, &SystemMonitor::objectWillChange);
    refresh.watch(&rig.settings, &AppSettings::objectWillChange);

    rig.monitor.publish(knownSample());
    rig.settings.setShowCPU(false);
    EXPECT_TRUE(fanCountsSeen.empty()) << "nothing is read inside a notice";
    EXPECT_TRUE(refresh.isPending());
    settle();
    // The fans are the last field published, so one read sees the whole tick.
    EXPECT_EQ(fanCountsSeen, std::vector<std::size_t>{2});
    EXPECT_FALSE(refresh.isPending());

    rig.monitor.publish(knownSample());
    settle();
    EXPECT_EQ(fanCountsSeen.size(), 2u) << "a later tick schedules again";
}

// Paints a widget at a fixed size onto a white image.
template <typename Widget> QImage paint(Widget& widget, QSize size) {
    widget.resize(size);
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

bool isColor(QRgb pixel, const QColor& colour) {
    return std::abs(qRed(pixel) - colour.red()) < 24 &&
           std::abs(qGreen(pixel) - colour.green()) < 24 &&
           std::abs(qBlue(pixel) - colour.blue()) < 24;
}

const QColor blue{0x00, 0x7A, 0xFF};

TEST(ColoredProgressBar, FillsFromTheLeftToItsValue) {
    ColoredProgressBar bar(10);
    bar.setColor(blue);
    bar.setValue(0.5);
    const QImage image = paint(bar, {200, 10});
    EXPECT_TRUE(isColor(image.pixel(20, 5), blue));
    EXPECT_TRUE(isColor(image.pixel(90, 5), blue));
    EXPECT_FALSE(isColor(image.pixel(110, 5), blue));
    EXPECT_FALSE(isColor(image.pixel(180, 5), blue));

    bar.setValue(7.0);
    EXPECT_EQ(bar.value(), 1.0);
    EXPECT_TRUE(isColor(paint(bar, {200, 10}).pixel(190, 5), blue));
    bar.setValue(nan);
    EXPECT_EQ(bar.value(), 0.0);
    EXPECT_FALSE(isColor(paint(bar, {200, 10}).pixel(5, 5), blue));
}

TEST(CoreBarsView, DrawsOneBarPerCoreFilledFromTheBottom) {
    CoreBarsView bars(40);
    bars.setColor(blue);
    bars.setCores({1.0, 0.0, 0.5, 0.25});
    const QImage image = paint(bars, {200, 40});
    // Slots of 50 points; look at each bar's middle.
    EXPECT_TRUE(isColor(image.pixel(25, 3), blue));
    EXPECT_TRUE(isColor(image.pixel(25, 37), blue));
    EXPECT_FALSE(isColor(image.pixel(75, 37), blue));
    EXPECT_FALSE(isColor(image.pixel(125, 10), blue));
    EXPECT_TRUE(isColor(image.pixel(125, 30), blue));
    EXPECT_FALSE(isColor(image.pixel(175, 25), blue));
    EXPECT_TRUE(isColor(image.pixel(175, 36), blue));
}

// The line or the fill under it: clearly bluer than the grey track and the white ground.
bool isTinted(QRgb pixel) {
    return qBlue(pixel) - qRed(pixel) > 40;
}

TEST(SparklineView, DrawsTheHistoryAgainstItsMaximum) {
    SparklineView graph(50);
    graph.setColor(blue);
    graph.setMaxValue(100.0);
    graph.setData({0.0, 100.0});
    const QImage rising = paint(graph, {100, 50});
    // The line runs from bottom left to top right; the area below it is filled.
    EXPECT_TRUE(isTinted(rising.pixel(90, 40)));
    EXPECT_TRUE(isTinted(rising.pixel(50, 30)));
    EXPECT_FALSE(isTinted(rising.pixel(10, 10)));
    EXPECT_FALSE(isTinted(rising.pixel(40, 15)));

    graph.setData({200.0, 200.0});
    const QImage clamped = paint(graph, {100, 50});
    EXPECT_TRUE(isTinted(clamped.pixel(50, 8))) << "values above the maximum fill to the top";
    EXPECT_FALSE(isTinted(clamped.pixel(50, 0))) << "but stay inside";

    graph.setData({50.0});
    const QImage single = paint(graph, {100, 50});
    for (int x = 0; x < 100; x += 10)
        for (int y = 0; y < 50; y += 10)
            EXPECT_FALSE(isTinted(single.pixel(x, y))) << "one sample draws nothing";
}

TEST(SparklineView, ScalesForPercentagesAndRates) {
    EXPECT_EQ(scaledHistory({0.0, 0.425, 1.0}, 100.0), (std::vector<double>{0.0, 42.5, 100.0}));
    EXPECT_EQ(rateScaleMaximum({}), 1.0);
    EXPECT_EQ(rateScaleMaximum({0.0, 0.5}), 1.0);
    EXPECT_EQ(rateScaleMaximum({10.0, 5000.0, 20.0}), 5000.0);
}

} // namespace
