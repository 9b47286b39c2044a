#include "app/StatusBarManager.h"
#include "app/PopoverPlacement.h"
#include "app/PopoverWindow.h"
#include "app/TrayItem.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>

namespace {

SamplingMonitors idleMonitors() {
    return SamplingMonitors::forThisMachine();
}

class StatusBarManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(directory.isValid());
        settings = std::make_unique<AppSettings>(directory.filePath("vorlune.conf"));
        monitor = std::make_unique<SystemMonitor>(idleMonitors(), false);
    }
    void TearDown() override { manager.removeAllStatusItems(); }

    std::set<SensorType> itemTypes() const {
        std::set<SensorType> types;
        for (const auto& [type, item] : manager.items())
            types.insert(type);
        return types;
    }
    void processEvents() {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }

    QTemporaryDir directory;
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<SystemMonitor> monitor;
    StatusBarManager manager;
};

TEST_F(StatusBarManagerTest, DesiredTypesFollowThePersistenceSettings) {
    EXPECT_TRUE(StatusBarManager::desiredSensorTypes(*settings).empty()) << "all items start off";

    settings->setPersistCPU(true);
    settings->setPersistNetworkIn(true);
    settings->setPersistNetworkOut(true);
    settings->setPersistFan(true);
    EXPECT_EQ(StatusBarManager::desiredSensorTypes(*settings),
              (std::set{SensorType::cpu, SensorType::networkIn, SensorType::networkOut,
                        SensorType::fan}));

    settings->setNetworkCombined(true);
    EXPECT_EQ(StatusBarManager::desiredSensorTypes(*settings),
              (std::set{SensorType::cpu, SensorType::fan}))
        << "combined without persistNetwork shows no network item at all";
    settings->setPersistNetwork(true);
    EXPECT_EQ(StatusBarManager::desiredSensorTypes(*settings),
              (std::set{SensorType::cpu, SensorType::network, SensorType::fan}));

    settings->setPersistMemory(true);
    settings->setPersistDisk(true);
    settings->setPersistCPUTemp(true);
    settings->setPersistGPUTemp(true);
    settings->setShowCPU(false);
    EXPECT_EQ(StatusBarManager::desiredSensorTypes(*settings).size(), 7u)
        << "the popover's show settings play no part";
}

TEST_F(StatusBarManagerTest, SyncCreatesAndRemovesItemsButKeepsUnchangedOnes) {
    manager.syncStatusItems();
    EXPECT_TRUE(manager.items().empty()) << "nothing before setup";

    settings->setPersistCPU(true);
    settings->setPersistNetworkIn(true);
    manager.setup(*monitor, *settings);
    EXPECT_EQ(itemTypes(), (std::set{SensorType::cpu, SensorType::networkIn}));
    const TrayItem* cpuItem = manager.items().at(SensorType::cpu).get();

    settings->setNetworkCombined(true);
    settings->setPersistNetwork(true);
    processEvents();
    EXPECT_EQ(itemTypes(), (std::set{SensorType::cpu, SensorType::network}));
    EXPECT_EQ(manager.items().at(SensorType::cpu).get(), cpuItem) << "kept, not recreated";

    settings->setPersistCPU(false);
    settings->setPersistNetwork(false);
    processEvents();
    EXPECT_TRUE(manager.items().empty());
}

TEST_F(StatusBarManagerTest, ItemsRedrawFromTheReadingsOnlyWhenTheyChange) {
    settings->setPersistCPU(true);
    settings->setPersistentDisplayStyle(PersistentStyle::textOnly);
    manager.setup(*monitor, *settings);
    const TrayItem& item = *manager.items().at(SensorType::cpu);
    const int initialRedraws = item.redrawCount();

    SystemSample sample;
    sample.cpuUsage = 0.42;
    monitor->publish(sample);
    processEvents();
    EXPECT_EQ(item.model().toolTip, QStringLiteral("CPU: 42%"));
    const int afterChange = item.redrawCount();
    EXPECT_EQ(afterChange, initialRedraws + 1) << "24 notices of one tick make one redraw";

    monitor->publish(sample);
    processEvents();
    EXPECT_EQ(item.redrawCount(), afterChange) << "an identical picture is not sent again";
}

TEST_F(StatusBarManagerTest, ClickingAnItemTogglesItsPopoverAndOnlyOneIsOpen) {
    settings->setPersistCPU(true);
    settings->setPersistMemory(true);
    manager.setup(*monitor, *settings);
    const int cpuTag = sensorTypeIndex(SensorType::cpu);
    const int memoryTag = sensorTypeIndex(SensorType::memory);

    manager.statusItemClicked(cpuTag);
    ASSERT_NE(manager.openPopover(SensorType::cpu), nullptr);

    manager.statusItemClicked(memoryTag);
    processEvents();
    EXPECT_EQ(manager.openPopover(SensorType::cpu), nullptr);
    ASSERT_NE(manager.openPopover(SensorType::memory), nullptr);

    manager.statusItemClicked(memoryTag);
    processEvents();
    EXPECT_EQ(manager.openPopover(SensorType::memory), nullptr) << "a second click closes it";

    manager.statusItemClicked(42);
    manager.statusItemClicked(-1);
    EXPECT_EQ(manager.openPopover(SensorType::memory), nullptr) << "unknown tags are ignored";
}

TEST_F(StatusBarManagerTest, MainPopoverOpensAStandaloneWindowForAKindWithoutAnItem) {
    settings->setPersistCPU(true);
    manager.setup(*monitor, *settings);

    const auto before = QApplication::topLevelWidgets().size();
    manager.showDetail(SensorType::disk, nullptr, true);
    QWidget* window = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowTitle() == QStringLiteral("Disk"))
            window = widget;
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), before + 1);
    EXPECT_EQ(window->size(), QSize(320, 380));
    EXPECT_EQ(manager.openPopover(SensorType::disk), nullptr) << "the window is not tracked";
    window->close();

    manager.showDetail(SensorType::cpu, nullptr, true);
    PopoverWindow* popover = manager.openPopover(SensorType::cpu);
    ASSERT_NE(popover, nullptr) << "a kind with an item opens under its item";
    manager.showDetail(SensorType::cpu, nullptr, true);
    EXPECT_EQ(manager.openPopover(SensorType::cpu), popover) << "again only brings it forward";
}

TEST_F(StatusBarManagerTest, QuittingRemovesEveryItemAndPopover) {
    settings->setPersistCPU(true);
    settings->setPersistFan(true);
    manager.setup(*monitor, *settings);
    manager.statusItemClicked(sensorTypeIndex(SensorType::fan));
    ASSERT_FALSE(manager.items().empty());

    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
    processEvents();
    EXPECT_TRUE(manager.items().empty());
    EXPECT_EQ(manager.openPopover(SensorType::fan), nullptr);
}

TEST(PopoverPlacement, OpensUnderTheItemFlipsNearTheBottomAndStaysOnScreen) {
    const QRect screen(0, 0, 1280, 800);
    const QSize size(320, 400);
    struct Case {
        const char* name;
        QRect item;
        std::optional<QPoint> cursor;
        QPoint expected;
    };
    const std::vector<Case> cases{
        {"under a top-panel item", QRect(600, 0, 22, 22), std::nullopt, QPoint(450, 22)},
        {"above a bottom-panel item", QRect(600, 778, 22, 22), std::nullopt, QPoint(450, 378)},
        {"kept inside at the right edge", QRect(1270, 0, 10, 22), std::nullopt, QPoint(960, 22)},
        {"at the cursor without geometry", QRect(), QPoint(100, 10), QPoint(0, 11)},
        {"top-right corner without anything", QRect(), std::nullopt, QPoint(960, 1)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(popoverPosition(c.item, c.cursor, screen, size), c.expected) << c.name;
}

} // namespace
