// The main popover driven by a real monitor whose published readings the test sets.
#include "PopoverRig.h"

#include "app/SensorType.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/MonitorSection.h"
#include "views/popovers/PopoverStyle.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace {

const QStringList sectionNames{"cpuSection", "memorySection", "diskSection", "networkSection",
                               "temperatureSection"};

struct MainPopover : PopoverRig {
    MainPopover() { monitor.publish(knownSample()); }

    // Built after the readings are in, as when the user opens the popover.
    MonitorPopoverView& view() {
        if (!view_)
            view_.emplace(monitor, settings, [this](SensorType kind) { opened.push_back(kind); });
        return *view_;
    }

    std::vector<SensorType> opened;
    std::optional<MonitorPopoverView> view_;
};

bool shown(const QWidget* root, const QString& name) {
    const QWidget* widget = widgetNamed(root, name);
    EXPECT_NE(widget, nullptr) << name.toStdString();
    return widget && widget->isVisibleTo(root);
}

TEST(MonitorPopoverView, ShowsEveryReadingWithItsFormat) {
    MainPopover popover;
    auto& view = popover.view();
    const QStringList texts = shownTexts(&view);
    for (const char* expected :
         {"Vorlune",       "CPU",       "42% usage", "4 cores",           "Memory",
          "6.3 / 16.0 GB", "39%",       "Disk",      "120 / 500 GB",      "24%",
          "Network",       "1.5 MB/s",  "3 KB/s",    "Temperature",       "CPU Temp",
          "65°C",          "Fan Speed", "2400 RPM",  "Updating every 2s", "Activity Monitor",
          "Console",       "Quit"})
        EXPECT_TRUE(texts.contains(QString::fromUtf8(expected))) << expected;
    EXPECT_EQ(view.sizeHint().width(), MonitorPopoverView::popoverWidth);
}

TEST(MonitorPopoverView, EachShowSettingHidesOnlyItsSection) {
    using Setter = void (AppSettings::*)(bool);
    const std::pair<Setter, QString> switches[] = {
        {&AppSettings::setShowCPU, "cpuSection"},
        {&AppSettings::setShowMemory, "memorySection"},
        {&AppSettings::setShowDisk, "diskSection"},
        {&AppSettings::setShowNetwork, "networkSection"},
        {&AppSettings::setShowTemperature, "temperatureSection"},
    };
    for (const auto& [setShow, hidden] : switches) {
        MainPopover popover;
        auto& view = popover.view();
        const int fullHeight = view.sizeHint().height();
        (popover.settings.*setShow)(false);
        settle();
        for (const QString& name : sectionNames)
            EXPECT_EQ(shown(&view, name), name != hidden) << name.toStdString();
        EXPECT_EQ(shown(&view, "fanRow"), hidden != "temperatureSection");
        EXPECT_LT(view.sizeHint().height(), fullHeight) << "the popover shrinks to fit";
    }
}

int shownDividers(const QWidget* root) {
    int count = 0;
    for (const auto* frame : root->findChildren<QFrame*>())
        if (frame->frameShape() == QFrame::HLine && frame->isVisibleTo(root))
            ++count;
    return count;
}

TEST(MonitorPopoverView, WithEverySectionOffOnlyHeaderAndFooterRemain) {
    MainPopover popover;
    auto& view = popover.view();
    EXPECT_EQ(shownDividers(&view), 6)
        << "under the header, between five sections, above the footer";
    for (auto setShow :
         {&AppSettings::setShowCPU, &AppSettings::setShowMemory, &AppSettings::setShowDisk,
          &AppSettings::setShowNetwork, &AppSettings::setShowTemperature})
        (popover.settings.*setShow)(false);
    settle();
    for (const QString& name : sectionNames)
        EXPECT_FALSE(shown(&view, name)) << name.toStdString();
    EXPECT_EQ(shownTexts(&view),
              (QStringList{"Vorlune", "Updating every 2s", "Activity Monitor", "Console", "Quit"}));
    EXPECT_EQ(shownDividers(&view), 1);

    popover.settings.setShowDisk(true);
    settle();
    EXPECT_TRUE(shown(&view, "diskSection"));
    EXPECT_EQ(shownDividers(&view), 2) << "the header's and the footer's";
}

TEST(MonitorPopoverView, FanSpeedRowFollowsShowFan) {
    MainPopover popover;
    auto& view = popover.view();
    popover.settings.setShowFan(false);
    settle();
    EXPECT_FALSE(shown(&view, "fanRow"));
    EXPECT_TRUE(shown(&view, "temperatureSection"));
    EXPECT_FALSE(shownTexts(&view).contains("Fan Speed"));
    popover.settings.setShowFan(true);
    settle();
    EXPECT_TRUE(shown(&view, "fanRow"));
}

TEST(MonitorPopoverView, TemperatureTurnsOrangeAt75AndRedAt90) {
    struct Case {
        double celsius;
        const char* text;
        QColor color;
    };
    const QColor theme(0x12, 0x34, 0x56);
    const Case cases[] = {
        {0.0, "—", theme},
        {74.9, "74°C", theme},
        {75.0, "75°C", QColor(0xFF, 0xA5, 0x00)},
        {89.9, "89°C", QColor(0xFF, 0xA5, 0x00)},
        {90.0, "90°C", QColor(0xFF, 0x00, 0x00)},
        {104.0, "104°C", QColor(0xFF, 0x00, 0x00)},
    };
    MainPopover popover;
    popover.settings.setTemperatureColorHex("123456");
    auto& view = popover.view();
    QLabel* value = labelNamed(&view, "temperatureValue");
    for (const auto& c : cases) {
        SystemSample sample = knownSample();
        sample.thermal.cpuTemp = c.celsius;
        popover.monitor.publish(sample);
        settle();
        EXPECT_EQ(value->text(), QString::fromUtf8(c.text)) << c.celsius;
        EXPECT_EQ(PopoverStyle::textColor(value), c.color) << c.celsius;
    }
}

TEST(MonitorPopoverView, FooterNumberFollowsTheUpdateIntervalSetting) {
    MainPopover popover;
    auto& view = popover.view();
    QLabel* footer = labelNamed(&view, "intervalLabel");
    EXPECT_EQ(footer->text(), "Updating every 2s");
    for (auto [seconds, text] : {std::pair{5.0, "Updating every 5s"},
                                 {1.0, "Updating every 1s"},
                                 {10.0, "Updating every 10s"}}) {
        popover.settings.setUpdateInterval(seconds);
        settle();
        EXPECT_EQ(footer->text(), text);
    }
    EXPECT_EQ(SystemMonitor::samplingInterval, 2.0) << "the setting is shown, not applied";
}

TEST(MonitorPopoverView, EachSectionTapOpensItsKind) {
    const std::pair<QString, SensorType> taps[] = {
        {"cpuSection", SensorType::cpu},
        {"memorySection", SensorType::memory},
        {"diskSection", SensorType::disk},
        {"networkSection", SensorType::network},
        {"temperatureSection", SensorType::cpuTemp},
    };
    MainPopover popover;
    auto& view = popover.view();
    view.show();
    for (const auto& [name, kind] : taps) {
        popover.opened.clear();
        click(widgetNamed(&view, name));
        EXPECT_EQ(popover.opened, std::vector<SensorType>{kind}) << name.toStdString();
    }
    // A click on a row inside the section reaches the section too.
    popover.opened.clear();
    click(labelNamed(&view, "diskAmount"));
    EXPECT_EQ(popover.opened, std::vector<SensorType>{SensorType::disk});
}

TEST(MonitorPopoverView, RedrawsOnlyAfterTheNoticeAndFromPublishedValues) {
    MainPopover popover;
    auto& view = popover.view();
    QLabel* cpu = labelNamed(&view, "cpuUsage");
    SystemSample sample = knownSample();
    sample.cpuUsage = 0.87;
    sample.coreUsages = {0.9, 0.9};
    popover.monitor.publish(sample);
    EXPECT_EQ(cpu->text(), "42% usage") << "not redrawn inside the notice";
    settle();
    EXPECT_EQ(cpu->text(), "87% usage");
    EXPECT_EQ(labelNamed(&view, "cpuCores")->text(), "2 cores");

    popover.settings.setCpuColorHex("00FF00");
    settle();
    const auto* section = static_cast<MonitorSection*>(widgetNamed(&view, "cpuSection"));
    EXPECT_EQ(section->color(), QColor(0, 255, 0));
}

TEST(MonitorPopoverView, QuitEndsTheEventLoop) {
    MainPopover popover;
    auto& view = popover.view();
    auto* quit = view.findChild<QToolButton*>("quitButton");
    ASSERT_NE(quit, nullptr);
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(1); });
    guard.start(5000);
    QTimer::singleShot(0, quit, &QToolButton::click);
    EXPECT_EQ(QCoreApplication::exec(), 0) << "Quit did not end the loop";
}

} // namespace
