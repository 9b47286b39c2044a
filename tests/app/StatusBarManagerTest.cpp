#include "app/StatusBarManager.h"
#include "app/PopoverPlacement.h"
#include "app/TrayItem.h"
#include "monitors/SystemMonitor.h"
#include "support/SettingsHome.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>

namespace {

class StatusBarManagerTest : public ::testing::Test {
protected:
    // Settings and readings reach the items through queued calls.
    static void settle() {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }
    SettingsHome home;
    std::unique_ptr<AppSettings> settings = home.open();
    SystemMonitor monitor{SamplingMonitors::forThisMachine(), false};
    StatusBarManager manager;
};

// One setting changes per step; the CPU item, made once, must be kept while it stays on.
TEST_F(StatusBarManagerTest, ItemsComeAndGoWithTheirSettings) {
    manager.setup(monitor, *settings);
    using S = SensorType;
    const std::tuple<const char*, bool, std::set<SensorType>> steps[] = {
        {"persistCPU", true, {S::cpu}},
        {"persistNetworkIn", true, {S::cpu, S::networkIn}},
        {"showCPU", false, {S::cpu, S::networkIn}}, // the popover's settings play no part
        {"networkCombined", true, {S::cpu}},
        {"persistNetwork", true, {S::cpu, S::network}},
        {"networkCombined", false, {S::cpu, S::networkIn}},
        {"persistCPU", false, {S::networkIn}},
        {"persistMemory", true, {S::memory, S::networkIn}},
        {"persistDisk", true, {S::memory, S::disk, S::networkIn}},
        {"persistNetworkIn", false, {S::memory, S::disk}},
        {"persistCPUTemp", true, {S::memory, S::disk, S::cpuTemp}},
        {"persistGPUTemp", true, {S::memory, S::disk, S::cpuTemp, S::gpuTemp}},
        {"persistFan", true, {S::memory, S::disk, S::cpuTemp, S::gpuTemp, S::fan}},
    };
    const TrayItem* cpuItem = nullptr;
    for (const auto& [setting, on, expected] : steps) {
        ASSERT_TRUE(settings->setProperty(setting, on)) << setting;
        settle();
        std::set<SensorType> types;
        for (const auto& [type, item] : manager.items())
            types.insert(type);
        EXPECT_EQ(types, expected) << setting << " " << on;
        const auto cpu = manager.items().find(S::cpu);
        const TrayItem* now = cpu == manager.items().end() ? nullptr : cpu->second.get();
        EXPECT_TRUE(!now || !cpuItem || now == cpuItem) << setting << " remade the CPU item";
        cpuItem = now ? now : cpuItem;
    }
}

TEST_F(StatusBarManagerTest, AnItemRedrawsWhenItsReadingChangesOnly) {
    settings->setPersistCPU(true);
    settings->setPersistentDisplayStyle(PersistentStyle::textOnly); // no history in the picture
    manager.setup(monitor, *settings);
    const TrayItem& item = *manager.items().at(SensorType::cpu);
    const int before = item.redrawCount();
    SystemSample sample;
    sample.cpuUsage = 0.42;
    for (int tick = 0; tick < 2; ++tick) {
        monitor.publish(sample);
        settle();
        EXPECT_EQ(item.redrawCount(), before + 1) << "tick " << tick;
    }
    EXPECT_EQ(item.model().toolTip, QStringLiteral("CPU: 42%"));
}

TEST_F(StatusBarManagerTest, ClicksToggleOnePopoverAndQuittingRemovesEverything) {
    settings->setPersistCPU(true);
    settings->setPersistMemory(true);
    manager.setup(monitor, *settings);
    const int cpu = sensorTypeIndex(SensorType::cpu), memory = sensorTypeIndex(SensorType::memory);
    for (const auto& [tag, open] :
         {std::pair{cpu, cpu}, {memory, memory}, {memory, -1}, {42, -1}}) {
        manager.statusItemClicked(tag);
        settle();
        for (int shown : {cpu, memory})
            EXPECT_EQ(manager.openPopover(*sensorTypeAt(shown)) != nullptr, shown == open)
                << "after a click on " << tag;
    }
    manager.showDetail(SensorType::cpu, nullptr, true);
    ASSERT_NE(manager.openPopover(SensorType::cpu), nullptr);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
    settle();
    EXPECT_TRUE(manager.items().empty());
    EXPECT_EQ(manager.openPopover(SensorType::cpu), nullptr);
}

TEST(PopoverPlacement, OpensUnderTheItemFlipsNearTheBottomAndStaysOnScreen) {
    const std::tuple<QRect, std::optional<QPoint>, bool, QPoint> cases[] = {
        {QRect(600, 0, 22, 22), std::nullopt, false, QPoint(450, 22)},    // under a top-panel item
        {QRect(600, 778, 22, 22), std::nullopt, true, QPoint(450, 378)},  // above a bottom one
        {QRect(600, 378, 22, 22), std::nullopt, false, QPoint(450, 400)}, // just fits below
        {QRect(1270, 0, 10, 22), std::nullopt, false, QPoint(960, 22)},   // kept on screen
        {QRect(), QPoint(100, 10), true, QPoint(0, 11)},                  // at the cursor
        // Without either, the corner on the panel's side.
        {QRect(), std::nullopt, false, QPoint(960, 1)},
        {QRect(), std::nullopt, true, QPoint(960, 400)},
    };
    for (const auto& [item, cursor, bottom, expected] : cases)
        EXPECT_EQ(popoverPosition(item, cursor, QRect(0, 0, 1280, 800), QSize(320, 400), bottom),
                  expected)
            << expected.x() << "," << expected.y();
}

} // namespace
