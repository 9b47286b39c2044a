// The daemon commands the fan section sends, seen by the real smc_helper daemon over a
// fake sysfs tree (through the fan duties it writes) and by a stand-in that logs them.
#include "FanControlRig.h"

#include "monitors/linux/HelperLocation.h"
#include "monitors/linux/IgnoreSigpipe.h"
#include "views/popovers/FanControlQueue.h"
#include "views/popovers/FanDetailContent.h"
#include "views/popovers/FanSliderRow.h"
#include "views/settings/ToggleSwitch.h"

#include <QSlider>
#include <QThreadPool>
#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

const std::vector<FanInfo> twoFans = {{0, 2000, 500, 6000, 2000}, {1, 2100, 500, 6000, 2100}};

std::string firstLine(const std::filesystem::path& file) {
    const std::string text = readFile(file);
    return text.substr(0, text.find('\n'));
}

struct FanSection : FanControlRig {
    FanSection() { ignoreSigpipe(); }

    // Shows the section and lets the switch's sync on appear finish.
    FanDetailContent& open() {
        content = std::make_unique<FanDetailContent>(monitor, settings);
        content->show();
        settle();
        return *content;
    }
    ToggleSwitch& manualSwitch() { return *content->findChild<ToggleSwitch*>("manualSwitch"); }
    // Flips the switch as a click does and waits for the work it started.
    void flipSwitch() {
        manualSwitch().click();
        EXPECT_TRUE(settleUntil([&] { return !content->isInstalling(); }));
    }
    FanSliderRow& sliderOf(long long fanId) {
        for (auto* row : content->findChildren<FanSliderRow*>())
            if (row->isVisibleTo(content.get()) && row->fanId() == fanId)
                return *row;
        throw std::runtime_error("no slider for fan " + std::to_string(fanId));
    }
    // Waits for the fan commands queued so far.
    void drainCommands() { EXPECT_TRUE(fanControlQueue(monitor).waitForDone(20000)); }
    // Every line the recorder got so far: the queue is drained, then a marker line is
    // sent and waited for, since the recorder logs each line a little after reading it.
    Lines recorded() {
        drainCommands();
        const std::string marker = markerPrefix + std::to_string(++markers);
        if (thermal().sendCommand(marker)) {
            EXPECT_TRUE(eventually([&] {
                const Lines lines = recordedLines();
                return std::find(lines.begin(), lines.end(), marker) != lines.end();
            }));
        }
        Lines lines = recordedLines();
        std::erase_if(lines,
                      [&](const std::string& line) { return line.starts_with(markerPrefix); });
        return lines;
    }
    const std::string markerPrefix = "# sent so far ";
    int markers = 0;

    std::unique_ptr<FanDetailContent> content;
};

// A board with two pwm-driven fans of 6000 RPM at most, left in automatic mode, and a
// cool CPU so the daemon's failsafe stays out of the way; the real daemon drives it.
class RealDaemonTest : public testing::Test, public FanSection {
protected:
    void SetUp() override {
        if (!runsAsRoot())
            GTEST_SKIP() << "the installed helper must be root-owned";
        if (!isExecutableFile(builtHelper))
            GTEST_SKIP() << "smc_helper has not been built at " << builtHelper;
        const std::string chip = "sys/devices/platform/nct6775.656/hwmon/hwmon2/";
        tree.writeFile(chip + "name", "nct6775\n");
        tree.writeFile(chip + "temp1_input", "40000\n");
        tree.writeFile(chip + "temp1_label", "CPUTIN\n");
        for (const char* n : {"1", "2"}) {
            const std::string fan = chip + "fan" + n;
            tree.writeFile(fan + "_input", "2000\n");
            tree.writeFile(fan + "_min", "500\n");
            tree.writeFile(fan + "_max", "6000\n");
        }
        tree.writeFile(chip + "pwm1", "100\n");
        tree.writeFile(chip + "pwm2", "120\n");
        tree.writeFile(chip + "pwm1_enable", "5\n");
        tree.writeFile(chip + "pwm2_enable", "5\n");
        const std::string coretemp = "sys/devices/platform/coretemp.0/hwmon/hwmon1/";
        tree.writeFile(coretemp + "name", "coretemp\n");
        tree.writeFile(coretemp + "temp1_input", "45000\n");
        tree.writeFile(coretemp + "temp1_label", "Package id 0\n");
        std::filesystem::create_directories(tree.path() / "sys/class/hwmon");
        std::filesystem::create_symlink("../../devices/platform/coretemp.0/hwmon/hwmon1",
                                        tree.path() / "sys/class/hwmon/hwmon1");
        std::filesystem::create_symlink("../../devices/platform/nct6775.656/hwmon/hwmon2",
                                        tree.path() / "sys/class/hwmon/hwmon2");
        installStandIn("exec " + builtHelper + " \"$@\" --sysfs-root " + tree.path().string() +
                       "\n");
    }
    std::string duty(const char* file) const {
        return firstLine(tree.path() / "sys/devices/platform/nct6775.656/hwmon/hwmon2" / file);
    }
    ScratchDir tree;
};

TEST_F(RealDaemonTest, SwitchingOnDrivesTheSavedPercentagesAndOffHandsTheFansBack) {
    settings.setFanPercentages({{0, 25}, {1, 75}});
    publishFans(twoFans);
    open();
    ASSERT_FALSE(content->isManualMode());

    flipSwitch();
    ASSERT_TRUE(content->isManualMode());
    EXPECT_FALSE(content->installFailed());
    // set-all 1500 4500 of 6000 RPM: duties (rpm x 255 + 3000) / 6000.
    EXPECT_TRUE(eventually([&] { return duty("pwm1") == "64" && duty("pwm2") == "191"; }))
        << duty("pwm1") << " " << duty("pwm2");
    EXPECT_EQ(duty("pwm1_enable"), "1");
    EXPECT_EQ(duty("pwm2_enable"), "1");

    sliderOf(1).slider()->setValue(50);
    drainCommands();
    EXPECT_TRUE(eventually([&] { return duty("pwm2") == "128"; })) << duty("pwm2");

    flipSwitch();
    EXPECT_FALSE(content->isManualMode());
    EXPECT_FALSE(thermal().isDaemonRunning());
    EXPECT_EQ(duty("pwm1"), "100");
    EXPECT_EQ(duty("pwm2"), "120");
    EXPECT_EQ(duty("pwm1_enable"), "5");
    EXPECT_EQ(duty("pwm2_enable"), "5");
    EXPECT_EQ(settings.fanPercentages(), (std::map<long long, double>{{0, 25}, {1, 50}}));
}

class RecordedCommands : public testing::Test, public FanSection {
protected:
    void SetUp() override {
        if (!runsAsRoot())
            GTEST_SKIP() << "the installed stand-in must be root-owned";
        installRecorder();
    }
};

TEST_F(RecordedCommands, OnSendsTheSavedSpeedsHalfASecondAfterReadyAndOffHandsBackThenQuits) {
    settings.setFanPercentages({{0, 25}, {1, 75}});
    publishFans(twoFans);
    open();
    flipSwitch();
    EXPECT_TRUE(thermal().isDaemonRunning());
    EXPECT_EQ(recorded(), Lines{"set-all 1500 4500"});
    EXPECT_GE(nanosecondsFromReadyTo("set-all 1500 4500"), 500'000'000);

    flipSwitch();
    EXPECT_EQ(recorded(), (Lines{"set-all 1500 4500", "fan-auto 0", "fan-auto 1", "quit"}));
    EXPECT_EQ(settings.fanPercentages(), (std::map<long long, double>{{0, 25}, {1, 75}}));
}

TEST_F(RecordedCommands, WithoutSavedPercentagesEveryFanGetsZero) {
    publishFans(twoFans);
    open();
    flipSwitch();
    EXPECT_EQ(recorded(), Lines{"set-all 0 0"});
}

TEST_F(RecordedCommands, SlidersSendTheirFansTargetOnReleaseAndAtMostEvery200msWhileDragged) {
    publishFans({{0, 2000, 500, 6000, 2000}, {1, 1000, 300, 3000, 1000}});
    open();
    flipSwitch();
    ASSERT_EQ(recorded(), Lines{"set-all 0 0"});

    // Moved without dragging (keys, wheel, a click on the track): sent at once.
    sliderOf(0).slider()->setValue(50);
    sliderOf(1).slider()->setValue(50);
    sliderOf(1).slider()->setValue(0);
    EXPECT_EQ(recorded(),
              (Lines{"set-all 0 0", "set-fan 0 3000", "set-fan 1 1500", "set-fan 1 0"}));

    // A quick drag: the first move goes out, then nothing until the release.
    QSlider& slider = *sliderOf(0).slider();
    const auto begun = std::chrono::steady_clock::now();
    slider.setSliderDown(true);
    for (int position : {51, 52, 53, 54, 55})
        slider.setSliderPosition(position);
    const bool quick = std::chrono::steady_clock::now() - begun < 150ms;
    slider.setSliderDown(false);
    const Lines afterDrag = recorded();
    ASSERT_GE(afterDrag.size(), 4u);
    const Lines drag(afterDrag.begin() + 4, afterDrag.end());
    if (quick) {
        EXPECT_EQ(drag, (Lines{"set-fan 0 3060", "set-fan 0 3300"}));
    }
    ASSERT_FALSE(drag.empty());
    EXPECT_EQ(drag.front(), "set-fan 0 3060");
    EXPECT_EQ(drag.back(), "set-fan 0 3300") << "the release sends the final value";

    // A slow drag: every move more than 200 ms after the last one goes out.
    const std::size_t before = recorded().size();
    slider.setSliderDown(true);
    for (int position : {60, 70}) {
        slider.setSliderPosition(position);
        std::this_thread::sleep_for(250ms);
    }
    slider.setSliderDown(false);
    const Lines lines = recorded();
    EXPECT_EQ(Lines(lines.begin() + static_cast<long>(before), lines.end()),
              (Lines{"set-fan 0 3600", "set-fan 0 4200", "set-fan 0 4200"}));
    EXPECT_EQ(content->fanPercentages(), (std::map<long long, double>{{0, 70}, {1, 0}}));
}

TEST_F(RecordedCommands, ReopenedSectionFollowsTheRunningDaemonWithoutSendingAnything) {
    publishFans(twoFans);
    ASSERT_TRUE(thermal().startDaemon());
    content = std::make_unique<FanDetailContent>(monitor, settings);
    content->show();
    EXPECT_TRUE(content->isSyncing());
    EXPECT_TRUE(content->isManualMode());
    EXPECT_TRUE(manualSwitch().isChecked());
    settle();
    EXPECT_FALSE(content->isSyncing());
    EXPECT_TRUE(content->isManualMode());
    drainCommands();
    EXPECT_TRUE(recorded().empty()) << "the programmatic change ran a switch handler";

    thermal().stopDaemon();
    content->hide();
    content->show();
    EXPECT_FALSE(content->isManualMode());
    EXPECT_FALSE(manualSwitch().isChecked());
    settle();
    EXPECT_EQ(recorded(), Lines{"quit"}) << "only the test's own stop";
}

TEST_F(RecordedCommands, DaemonThatCannotStartTurnsTheSwitchBackOff) {
    // Root-owned and set-user-ID, but no program the kernel can run.
    dir.writeFile(installed, "not a program\n", 04755);
    ASSERT_TRUE(thermal().isHelperInstalled());
    publishFans(twoFans);
    open();
    flipSwitch();
    EXPECT_FALSE(content->isManualMode());
    EXPECT_FALSE(manualSwitch().isChecked());
    EXPECT_TRUE(content->installFailed());
    EXPECT_FALSE(thermal().isDaemonRunning());
    EXPECT_FALSE(std::filesystem::exists(commands)) << "no command may be sent";
}

} // namespace
