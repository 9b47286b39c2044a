// The popovers' texts and levels at their boundaries, and how the main popover's
// sections follow the settings.
#include "PopoverRig.h"

#include "views/popovers/MemoryPressure.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/PopoverText.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

QString pressure(double fraction) {
    return memoryPressureText(memoryPressure(fraction));
}

TEST(PopoverText, TruncatesAndSwitchesUnitsAndLevelsAtTheirBoundaries) {
    const std::pair<QString, QString> cases[] = {
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
}

} // namespace
