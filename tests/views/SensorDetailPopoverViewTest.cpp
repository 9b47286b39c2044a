// The nine detail popovers driven by a real monitor whose published readings the test sets.
#include "PopoverRig.h"

#include "monitors/ThermalEstimate.h"
#include "views/popovers/FanRowsView.h"
#include "views/popovers/PopoverStyle.h"
#include "views/popovers/SensorDetailPopoverView.h"
#include "views/popovers/SensorListView.h"
#include "views/popovers/SparklineView.h"

#include <QLabel>
#include <QToolButton>
#include <gtest/gtest.h>

#include <memory>

namespace {

struct DetailPopover : PopoverRig {
    explicit DetailPopover(SensorType kind, const SystemSample& sample = knownSample()) {
        monitor.publish(sample);
        view = std::make_unique<SensorDetailPopoverView>(kind, monitor, settings,
                                                         [this] { ++settingsOpened; });
    }
    int settingsOpened = 0;
    std::unique_ptr<SensorDetailPopoverView> view;
};

QString utf8(const char* text) {
    return QString::fromUtf8(text);
}

TEST(SensorDetailPopoverView, EveryKindShowsItsTitleAndTexts) {
    struct Case {
        SensorType kind;
        std::vector<const char*> present;
        std::vector<const char*> absent;
    };
    const Case cases[] = {
        {SensorType::cpu, {"CPU", "Overall 42%", "History", "Per-Core Usage (4 cores)"}, {}},
        {SensorType::memory,
         {"Memory", "6.3 / 16.0 GB", "39% used", "9.7 GB free", "Pressure:", "Normal", "History"},
         {}},
        {SensorType::disk, {"Disk", "120 / 500 GB", "24% used", "380 GB free", "Storage Map"}, {}},
        {SensorType::networkIn, {"Net ↓", "Download Rate", "1.5 MB/s", "History"}, {"3 KB/s"}},
        {SensorType::networkOut, {"Net ↑", "Upload Rate", "3 KB/s", "History"}, {"1.5 MB/s"}},
        {SensorType::network,
         {"Network", "1.5 MB/s", "3 KB/s", "Download History", "Upload History"},
         {}},
        {SensorType::cpuTemp,
         {"CPU Temp", "65°C", "History", "All CPU Sensors", "CPU Die", "66°C", "CPU Core 0",
          "64°C"},
         {"GPU Edge", "SSD", "Other Sensors"}},
        {SensorType::gpuTemp,
         {"GPU Temp", "58°C", "All GPU Sensors", "GPU Edge", "Other Sensors", "SSD", "40°C"},
         {"CPU Die", "CPU Core 0", "History"}},
        {SensorType::fan,
         {"Fan", "Fan Speed", "2400 RPM", "Fan control requires a one-time setup."},
         {"Fan 1"}},
    };
    for (const auto& c : cases) {
        DetailPopover popover(c.kind);
        const QStringList texts = shownTexts(popover.view.get());
        const std::string kind(rawValue(c.kind));
        EXPECT_EQ(labelNamed(popover.view.get(), "title")->text(), utf8(rawValue(c.kind).data()));
        for (const char* expected : c.present)
            EXPECT_TRUE(texts.contains(utf8(expected))) << kind << ": " << expected;
        for (const char* unexpected : c.absent)
            EXPECT_FALSE(texts.contains(utf8(unexpected))) << kind << ": " << unexpected;
        EXPECT_EQ(popover.view->sizeHint().width(), SensorDetailPopoverView::popoverWidth);
    }
}

TEST(SensorDetailPopoverView, GraphsUseTheirScales) {
    struct Case {
        SensorType kind;
        double maxValue;
        double newest; // the last sample drawn
    };
    SystemSample sample = knownSample();
    sample.network = {5000.0, 300.0};
    const Case cases[] = {
        {SensorType::cpu, 100.0, 42.5},         {SensorType::memory, 100.0, 6.3 / 16.0 * 100.0},
        {SensorType::cpuTemp, 110.0, 65.7},     {SensorType::networkIn, 5000.0, 5000.0},
        {SensorType::networkOut, 300.0, 300.0},
    };
    for (const auto& c : cases) {
        DetailPopover popover(c.kind, sample);
        const auto graphs = popover.view->findChildren<SparklineView*>();
        ASSERT_EQ(graphs.size(), 1) << rawValue(c.kind);
        EXPECT_EQ(graphs[0]->maxValue(), c.maxValue) << rawValue(c.kind);
        ASSERT_EQ(graphs[0]->data().size(), 60u);
        EXPECT_DOUBLE_EQ(graphs[0]->data().back(), c.newest) << rawValue(c.kind);
    }
}

TEST(SensorDetailPopoverView, MemoryPressureFollowsTheShareUsed) {
    struct Case {
        double used;
        double total;
        const char* level;
        QColor color;
    };
    const Case cases[] = {
        {6.9, 10.0, "Normal", PopoverStyle::green},
        {7.0, 10.0, "Moderate", QColor(0xFF, 0xA5, 0x00)},
        {8.9, 10.0, "Moderate", QColor(0xFF, 0xA5, 0x00)},
        {9.0, 10.0, "High", QColor(0xFF, 0x00, 0x00)},
        {0.0, 0.0, "Normal", PopoverStyle::green},
    };
    DetailPopover popover(SensorType::memory);
    QLabel* pressure = labelNamed(popover.view.get(), "pressure");
    for (const auto& c : cases) {
        SystemSample sample = knownSample();
        sample.memory = {c.used, c.total, 0, 0, 0, 0};
        popover.monitor.publish(sample);
        settle();
        EXPECT_EQ(pressure->text(), c.level) << c.used << " of " << c.total;
        EXPECT_EQ(PopoverStyle::textColor(pressure), c.color) << c.used << " of " << c.total;
    }
}

TEST(SensorDetailPopoverView, WithoutAHelperShowsTheEstimateAndEmptySensorLists) {
    SystemSample sample = knownSample();
    sample.thermal = estimatedThermalReadings(ThermalState::fair);
    for (SensorType kind : {SensorType::cpuTemp, SensorType::gpuTemp}) {
        DetailPopover popover(kind, sample);
        for (const auto* list : popover.view->findChildren<SensorListView*>())
            EXPECT_EQ(list->rowCount(), 0) << list->objectName().toStdString();
        EXPECT_FALSE(popover.view->findChildren<SensorListView*>().isEmpty());
        const QString expected = kind == SensorType::cpuTemp ? "65°C" : "—";
        EXPECT_EQ(labelNamed(popover.view.get(), "temperature")->text(), expected);
    }
    DetailPopover fan(SensorType::fan, sample);
    EXPECT_TRUE(shownTexts(fan.view.get()).contains("Enable Fan Control"));
    EXPECT_EQ(labelNamed(fan.view.get(), "speed")->text(), "0 RPM");
}

TEST(SensorDetailPopoverView, SensorListsFollowEachPublish) {
    DetailPopover popover(SensorType::gpuTemp);
    auto* gpu = popover.view->findChild<SensorListView*>("gpuSensors");
    auto* other = popover.view->findChild<SensorListView*>("otherSensors");
    ASSERT_TRUE(gpu && other);
    EXPECT_EQ(gpu->rowCount(), 1);
    EXPECT_EQ(other->rowCount(), 1);

    SystemSample sample = knownSample();
    sample.thermal.sensors = {
        {"g1", "GPU Edge", 91.0}, {"g2", "GPU Hotspot", 80.0}, {"g3", "GPU Memory", 60.0}};
    popover.monitor.publish(sample);
    settle();
    EXPECT_EQ(gpu->rowCount(), 3);
    EXPECT_EQ(other->rowCount(), 0);
    const QStringList texts = shownTexts(popover.view.get());
    EXPECT_TRUE(texts.contains("GPU Memory"));
    EXPECT_FALSE(texts.contains("SSD")) << "rows of an earlier reading are gone";

    popover.monitor.publish(knownSample());
    settle();
    EXPECT_EQ(gpu->rowCount(), 1);
    EXPECT_FALSE(shownTexts(popover.view.get()).contains("GPU Memory"));
}

TEST(SensorDetailPopoverView, FanRowsNumberFromOneAndShowIdle) {
    PopoverRig rig;
    rig.monitor.publish(knownSample());
    auto rows = std::make_unique<FanRowsView>(rig.monitor, rig.settings);
    EXPECT_EQ(rows->rowCount(), 2);
    EXPECT_TRUE(shownTexts(rows.get()).contains("Idle"));
    SystemSample sample = knownSample();
    sample.thermal.fans = {{3, 1800.0, 0, 5000, 0}};
    rig.monitor.publish(sample);
    settle();
    EXPECT_EQ(rows->rowCount(), 1);
    const QStringList texts = shownTexts(rows.get());
    EXPECT_TRUE(texts.contains("Fan 4"));
    EXPECT_TRUE(texts.contains("1800 RPM"));
    EXPECT_FALSE(texts.contains("Idle"));
}

TEST(SensorDetailPopoverView, SettingsButtonCallsOnOpenSettings) {
    DetailPopover popover(SensorType::disk);
    auto* button = popover.view->findChild<QToolButton*>("settingsButton");
    ASSERT_NE(button, nullptr);
    button->click();
    button->click();
    EXPECT_EQ(popover.settingsOpened, 2);
}

TEST(SensorDetailPopoverView, TakesTheKindsColourFromTheSettings) {
    DetailPopover popover(SensorType::disk);
    QLabel* amount = labelNamed(popover.view.get(), "amount");
    EXPECT_EQ(PopoverStyle::textColor(amount), QColor(0xFF, 0x95, 0x00));
    popover.settings.setDiskColorHex("#00ff00");
    EXPECT_EQ(PopoverStyle::textColor(amount), QColor(0xFF, 0x95, 0x00)) << "not inside the notice";
    settle();
    EXPECT_EQ(PopoverStyle::textColor(amount), QColor(0x00, 0xFF, 0x00));
}

} // namespace
