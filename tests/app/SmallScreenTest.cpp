#include "app/PopoverWindow.h"
#include "views/PopoverRig.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/SensorDetailPopoverView.h"

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

namespace {

// On a 1024 × 600 screen (the offscreen platform's configuration) with 64 CPUs every
// popover stays on screen, and content taller than it scrolls.
TEST(SmallScreen, EveryPopoverFitsAndWhatIsTallerScrolls) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    ASSERT_EQ(screen.size(), QSize(1024, 600)) << "the screen configuration was not applied";
    PopoverRig rig;
    SystemSample sample;
    for (int core = 0; core < 64; ++core)
        sample.coreUsages.push_back((core * 37 % 100) / 100.0);
    sample.thermal.fans = {{0, "hwmon0/fan1", 2400.0, 1200.0, 6000.0, 2400.0}};
    rig.monitor.publish(sample);

    auto fits = [&](QWidget* window, const char* name) {
        settle();
        EXPECT_TRUE(screen.contains(window->frameGeometry())) << name;
        const auto* scroll = window->findChild<QScrollArea*>();
        if (!scroll)
            return ADD_FAILURE() << name << " scrolls nothing", false;
        const bool taller = scroll->widget()->sizeHint().height() > window->height();
        EXPECT_EQ(scroll->verticalScrollBar()->maximum() > 0, taller) << name;
        return taller;
    };
    const QRect item(1000, 0, 22, 22);
    auto* main = new PopoverWindow(new MonitorPopoverView(rig.monitor, rig.settings, {}), 300);
    main->showUnder(item);
    EXPECT_TRUE(fits(main, "main")) << "64 per-core rows outgrow 600 px";
    main->close();
    for (const SensorType type : allCases<SensorType>()) {
        auto* detail = new PopoverWindow(
            new SensorDetailPopoverView(type, rig.monitor, rig.settings, {}), 320);
        detail->showUnder(item);
        fits(detail, rawValue(type).data());
        detail->close();
    }
}

} // namespace
