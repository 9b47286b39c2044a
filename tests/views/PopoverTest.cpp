// The popovers' texts and levels at their boundaries, and how the main popover's
// sections follow the settings.
#include "PopoverRig.h"

#include "views/menubar/MenuBarValueText.h"
#include "views/popovers/CoreBarsView.h"
#include "views/popovers/DetailFigureText.h"
#include "views/popovers/MemoryPressure.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/PopoverText.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

QString pressure(double fraction) {
    return memoryPressureText(memoryPressure(fraction));
}

TEST(PopoverText, TruncatesAndSwitchesUnitsAndLevelsAtTheirBoundaries) {
    MenuBarReadings busy;
    busy.cpuUsage = 0.42;
    busy.busiestCore = BusiestCore{5, 1.2}; // a counter stepped back
    const std::pair<QString, QString> cases[] = {
        {menuBarToolTip(SensorType::cpu, busy), "CPU: 42%\nBusiest core: CPU 5 · 100%"},
        {busiestCoreText({0, 0.989}), "Busiest core: CPU 0 · 98%"},
        {coreShareText(1.874), "187.4%"},
        {byteSizeText(1073741823), "1024 MB"},
        {byteSizeText(1073741824), "1.0 GB"},
        {volumeCapacityText(3e9, 8e9), "2.8 / 7.5 GB"},
        {volumeCapacityText(120e9, 500e9), "112 / 466 GB"},
        {memoryLimitText(4ull << 30, 16.0), "Limited to 4.0 GB by this session's cgroup"},
        {memoryLimitText(16ull << 30, 16.0), ""},
        {percentText(0.999), "99%"},
        {popoverRateText(1023), "1023 B/s"},
        {popoverRateText(1024), "1 KB/s"},
        {popoverRateText(1048575), "1024 KB/s"},
        {popoverRateText(1048576), "1.0 MB/s"},
        {popoverRateText(std::numeric_limits<double>::infinity()), "0 B/s"},
        {temperatureText(0), "—"},
        {temperatureText(74.9), "74°C"},
        {rpmText(2400.7), "2400 RPM"},
        {updateIntervalText(5.9), "Updating every 5s"},
        {QString::number(wholeNumber(1e300)), "0"},
        {pressure(0.6999), "Normal"},
        {pressure(7.0 / 10.0), "Moderate"},
        {pressure(9.0 / 10.0), "High"},
        {pressure(nan), "Normal"},
    };
    for (const auto& [actual, expected] : cases)
        EXPECT_EQ(actual, expected);
}

// A row per core up to 16; past that a grid that is never taller than those 16 rows.
TEST(CoreBarsView, ListsEachCoreAndKeepsManyCoresShort) {
    const std::unique_ptr<CoreBarsView> list(CoreBarsView::list(nullptr));
    std::map<std::size_t, int> height;
    for (std::size_t cores : {1, 8, 16, 17, 64, 1024}) {
        list->setCores(std::vector<double>(cores, 0.5));
        height[cores] = list->height();
    }
    EXPECT_TRUE(height[1] < height[8] && height[8] < height[16]);
    EXPECT_LT(height[17], height[16]);
    EXPECT_LE(height[64], height[16]);
    EXPECT_LE(height[1024], height[16]);
}

TEST(MonitorPopoverView, EachSectionOpensItsKindAndHidesByItsSetting) {
    using Setter = void (AppSettings::*)(bool);
    const std::tuple<const char*, SensorType, Setter> sections[] = {
        {"cpuSection", SensorType::cpu, &AppSettings::setShowCPU},
        {"memorySection", SensorType::memory, &AppSettings::setShowMemory},
        {"diskSection", SensorType::disk, &AppSettings::setShowDisk},
        {"networkSection", SensorType::network, &AppSettings::setShowNetwork},
        {"temperatureSection", SensorType::cpuTemp, &AppSettings::setShowTemperature},
    };
    for (const auto& [name, kind, setShow] : sections) {
        SCOPED_TRACE(name);
        PopoverRig rig;
        std::vector<SensorType> opened;
        MonitorPopoverView view(rig.monitor, rig.settings, [&](SensorType k) { opened = {k}; });
        view.show();
        click(view.findChild<QWidget*>(name));
        EXPECT_EQ(opened, std::vector<SensorType>{kind});
        const int fullHeight = view.sizeHint().height();
        (rig.settings.*setShow)(false);
        EXPECT_TRUE(view.findChild<QWidget*>(name)->isVisible()) << "not inside the notice";
        settle();
        for (const auto& [other, k, s] : sections)
            EXPECT_EQ(view.findChild<QWidget*>(other)->isVisible(), other != name) << other;
        EXPECT_LT(view.sizeHint().height(), fullHeight);
    }
    // Tab walks the same sections in order; Space opens each, and each is read out whole.
    PopoverRig rig;
    std::vector<SensorType> opened, expected;
    MonitorPopoverView view(rig.monitor, rig.settings, [&](SensorType k) { opened.push_back(k); });
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    for (const auto& [name, kind, setShow] : sections) {
        // The popover opens with its first section focused.
        if (kind != SensorType::cpu)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* focused = QApplication::focusWidget();
        ASSERT_EQ(focused->objectName().toStdString(), name);
        QTest::keyClick(focused, Qt::Key_Space);
        expected.push_back(kind);
        EXPECT_TRUE(focused->accessibleName().contains(QStringLiteral(", "))) << name;
    }
    EXPECT_EQ(opened, expected);
}

} // namespace
