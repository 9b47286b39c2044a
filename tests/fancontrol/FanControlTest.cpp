// Manual fan control: its arithmetic, installing the helper through stand-in pkexecs, and
// the fan section of the fan popover, pictured in each state and driving real daemons.
#include "monitors/FanFigures.h"
#include "monitors/HelperInstallation.h"
#include "monitors/SamplingMonitors.h"
#include "monitors/SystemMonitor.h"
#include "monitors/linux/HelperLocation.h"
#include "settings/AppearancePalette.h"
#include "settings/Contrast.h"
#include "support/FakeSysfs.h"
#include "support/SettingsHome.h"
#include "support/TempDir.h"
#include "support/WindowCheck.h"
#include "views/menubar/MenuBarColor.h"
#include "views/popovers/CommandThrottle.h"
#include "views/popovers/FanControlQueue.h"
#include "views/popovers/FanControlText.h"
#include "views/popovers/FanDetailContent.h"
#include "views/popovers/FanSliderRow.h"
#include "views/popovers/PopoverStyle.h"
#include "views/popovers/SensorDetailPopoverView.h"
#include "views/settings/ToggleSwitch.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QSlider>
#include <QStyleFactory>
#include <QThreadPool>
#include <gtest/gtest.h>

#include <cmath>
#include <signal.h>

namespace {

namespace fs = std::filesystem;

TEST(FanMath, TargetsStatusAndFirstFanFigures) {
    // A share of the maximum the fan reports, else the duty alone: no RPM is made up.
    const std::tuple<double, std::optional<double>, const char*> targets[] = {
        {0, 6000, "0% — 0 RPM"},
        {33.4, 5000, "33% — 1670 RPM"},
        {100, 3000, "100% — 3000 RPM"},
        {40, std::nullopt, "40%"}};
    for (const auto& [percent, max, slider] : targets) {
        const FanInfo fan{0, "hwmon/c/d/fan1", 1000, {}, max, {}};
        EXPECT_EQ(sliderValueText(fanDrive(fan, percent), percent), slider);
    }

    const QColor green = PopoverStyle::green, orange = MenuBarColors::warm;
    const struct {
        bool manual;
        long long speed, max;
        FanStatus expected;
    } statuses[] = {
        {true, 5000, 6000, {"Manual override", orange, std::nullopt}},
        {false, -5, 6000, {"Idle — fans off", green, std::nullopt}},
        {false, 3000, 6000, {"50% capacity", green, 0.5}},
        {false, 3060, 6000, {"51% capacity", orange, 0.51}},
        {false, 4800, 6000, {"80% capacity", orange, 0.8}},
        {false, 4860, 6000, {"81% capacity", MenuBarColors::hot, 0.81}},
        {false, 1000, 0, {"1000 RPM", green, std::nullopt}},
    };
    for (const auto& s : statuses)
        EXPECT_TRUE(fanStatus(s.manual, s.speed, s.max) == s.expected) << s.speed;

    // Whole RPM, the maximum at least 1; a speed beyond that is the helper's fault and
    // clamping it would hide it.
    const auto firstFan = [](double actual, double max) {
        return ThermalReadings{0, 0, {}, {{0, "", actual, 0, max, {}}, {1, "", 9999, 0, 9999, {}}}};
    };
    EXPECT_EQ(firstFanMaxSpeed({}), 6000);
    EXPECT_EQ(firstFanSpeed(firstFan(-1500.2, 0.5)), -1500);
    EXPECT_EQ(firstFanMaxSpeed(firstFan(1234.9, 0.5)), 1);
    EXPECT_EQ(firstFanMaxSpeed(firstFan(1234.9, 5800.7)), 5800);
    EXPECT_DEATH(firstFanSpeed(firstFan(std::nan(""), 6000)), "Fan speed of nan RPM");
    EXPECT_DEATH(firstFanMaxSpeed(firstFan(0, -1e19)), "cannot be converted");
}

TEST(FanMath, ThrottleLetsOneCommandThroughPerGap) {
    using namespace std::chrono_literals;
    CommandThrottle throttle(200ms);
    const CommandThrottle::Clock::time_point start{};
    const std::pair<std::chrono::milliseconds, bool> steps[] = {
        {0ms, true}, {199ms, false}, {200ms, true}, {250ms, false}, {399ms, false}, {400ms, true}};
    for (const auto& [at, allowed] : steps)
        EXPECT_EQ(throttle.allow(start + at), allowed) << at.count() << " ms";
    throttle.reset();
    EXPECT_TRUE(throttle.allow(start + 401ms)) << "after a reset the next goes at once";
}

/// A real monitor that never samples, whose helper installs to and whose daemon starts
/// from a scratch directory, and a settings file of its own.
struct FanRig {
    ~FanRig() { fanControlQueue(monitor).waitForDone(); } // queued work uses the monitor
    ThermalMonitor& thermal() { return monitor.thermalMonitor(); }

    TempDir dir;
    // A quote, blanks and a command substitution: no shell may ever see this path.
    const std::string installed = dir.str() + "/bin's dir/$(touch pwned) vorlune_smc_helper";
    const std::string elevation = dir.str() + "/elevate";
    SettingsHome home;
    std::unique_ptr<AppSettings> settings = home.open();
    SystemMonitor monitor{{nullptr, nullptr, nullptr, nullptr,
                           std::make_unique<ThermalMonitor>(installed, elevation), nullptr},
                          false};
};

/// Runs what the views queued, until `condition` holds or 20 s have passed.
inline bool settleUntil(const std::function<bool()>& condition = [] { return true; }) {
    return eventually(
        [&] {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
            return condition();
        },
        std::chrono::seconds(20));
}

TEST(InstallHelper, TrustsOnlyARootOwnedSetuidCopyMadeByAnAcceptedPrompt) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "install's chown needs root";
    const struct {
        const char* name;
        std::string tail; // what the stand-in does after logging; empty: no program at all
        bool installed, copied;
    } cases[] = {
        {"accepted", "exec \"$@\"\n", true, true},
        {"dismissed prompt", "exit 126\n", false, false},
        {"not authorised", "exit 127\n", false, false},
        {"copy left without set-user-ID", "\"$@\"\nfor last; do :; done\nchmod u-s \"$last\"\n",
         false, true},
        {"pkexec missing", "", false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FanRig rig;
        if (!c.tail.empty())
            rig.dir.writeScript("elevate", "printf '%s|' \"$@\" > \"$0.args\"\n" + c.tail);
        ASSERT_TRUE(rig.thermal().helperPath()) << "smc_helper is not built";
        EXPECT_EQ(rig.thermal().installHelper(), c.installed);
        EXPECT_EQ(rig.thermal().isHelperInstalled(), c.installed);
        EXPECT_EQ(readFile(rig.installed) == readFile(*rig.thermal().helperPath()), c.copied);
        if (c.installed) { // root and the installing user's group only
            EXPECT_EQ(fs::status(rig.installed).permissions() & fs::perms::others_all,
                      fs::perms::none);
        }
        if (!c.tail.empty()) { // every path one argument, whatever it holds
            EXPECT_EQ(rig.dir.read("elevate.args"),
                      "/usr/bin/install|-D|-T|-o|root|-g|0|-m|4750|--|" +
                          *rig.thermal().helperPath() + "|" + rig.installed + "|");
        }
    }
    // An upgrade leaves the old copy: outdated until reinstalled. Removing it goes
    // through the prompt too, the path one argument; a dismissed prompt leaves it.
    FanRig rig;
    rig.dir.writeScript("elevate", "printf '%s|' \"$@\" > \"$0.args\"\nexec \"$@\"\n");
    ASSERT_TRUE(rig.thermal().installHelper());
    EXPECT_FALSE(rig.thermal().isHelperOutdated());
    rig.dir.writeScript(rig.installed, "echo 'smc_helper 0.9 commands 1'\n", 04755);
    EXPECT_TRUE(rig.thermal().isHelperOutdated());
    rig.dir.writeScript("elevate.dismissed", "exit 126\n");
    fs::rename(rig.dir.path() / "elevate", rig.dir.path() / "elevate.accepting");
    fs::rename(rig.dir.path() / "elevate.dismissed", rig.dir.path() / "elevate");
    EXPECT_FALSE(rig.thermal().uninstallHelper());
    fs::rename(rig.dir.path() / "elevate.accepting", rig.dir.path() / "elevate");
    EXPECT_TRUE(rig.thermal().uninstallHelper());
    EXPECT_FALSE(fs::exists(rig.installed));
    EXPECT_EQ(rig.dir.read("elevate.args"), "/usr/bin/rm|-f|--|" + rig.installed + "|");

    // A helper someone else could have replaced is never offered to the prompt.
    TempDir dir;
    const fs::path copy = dir.write("smc_helper", "#!/bin/sh\n", 0775);
    EXPECT_FALSE(isTrustedHelperSource(copy)) << "group-writable";
    fs::permissions(copy, fs::perms(0755));
    EXPECT_TRUE(isTrustedHelperSource(copy));
    ASSERT_EQ(::chown(copy.c_str(), 65534, 65534), 0);
    EXPECT_FALSE(isTrustedHelperSource(copy)) << "owned by nobody";
    dir.link("smc_helper", "link");
    EXPECT_FALSE(isTrustedHelperSource(dir.path() / "link")) << "a symlink";
    // Nor is such a helper used where Vorlune looks for one.
    const fs::path beside = dir.write("libexec/vorlune/smc_helper", "#!/bin/sh\n", 0757);
    EXPECT_EQ(locateHelperFrom(dir.str() + "/bin", ""), std::nullopt);
    fs::permissions(beside, fs::perms(0755));
    EXPECT_EQ(locateHelperFrom(dir.str() + "/bin", ""), beside.string());
}

// More than a few pixels of about this colour.
bool shows(const QImage& image, const QColor& colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += std::max({std::abs(image.pixelColor(x, y).red() - colour.red()),
                               std::abs(image.pixelColor(x, y).green() - colour.green()),
                               std::abs(image.pixelColor(x, y).blue() - colour.blue())}) < 24;
    return count > 20;
}

struct Section : testing::Test, FanRig {
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "an installed helper must be root-owned";
        SystemSample sample;
        sample.thermal.fans = {{0, "hwmon/nct6775/nct6775.656/fan1", 2400, 1200, 6000, 2400},
                               {1, "hwmon/nct6775/nct6775.656/fan2", 1800, {}, {}, {}}};
        monitor.publish(sample);
    }
    FanDetailContent& open() {
        content = std::make_unique<FanDetailContent>(monitor, *settings);
        content->show();
        settleUntil();
        return *content;
    }
    ToggleSwitch& manualSwitch() { return *content->findChild<ToggleSwitch*>("manualSwitch"); }
    void flipSwitch() {
        manualSwitch().click();
        EXPECT_TRUE(settleUntil([&] { return !content->isInstalling(); }));
    }
    std::unique_ptr<FanDetailContent> content;
};

TEST_F(Section, EachStateIsLaidOutWithoutClippingInTheThemeColours) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    settings->setAppearanceMode(AppearanceMode::light);
    settings->applyAppearance(*qApp);
    dir.writeScript(elevation, "exit 126\n"); // a dismissed prompt
    const auto clickAndWait = [](const char* name) {
        return [name](FanDetailContent& section) {
            section.findChild<QAbstractButton*>(name)->click();
            settleUntil([&] { return !section.isInstalling(); });
        };
    };
    const struct {
        const char* name;
        std::function<void(FanDetailContent&)> prepare;
        bool red, orange; // the failure line; the manual status and its warning
    } states[] = {
        {"fan-setup-failed", clickAndWait("enableButton"), true, false},
        {"fan-automatic",
         [&](FanDetailContent& section) {
             // Says it is this version when asked, as the real helper would.
             dir.writeScript(installed,
                             "[ \"$1\" = --version ] && exec \"" + *thermal().helperPath() +
                                 "\" --version\n" + "echo ready\nexec cat >/dev/null\n",
                             04755);
             section.refresh();
         },
         false, false},
        {"fan-manual", clickAndWait("manualSwitch"), false, true},
    };
    for (const auto& state : states) {
        SCOPED_TRACE(state.name);
        SensorDetailPopoverView view(SensorType::fan, monitor, *settings, [] {});
        view.show();
        settleUntil();
        state.prepare(*view.findChild<FanDetailContent*>("fanSection"));
        settleUntil();
        view.adjustSize();
        settleUntil();
        const QImage image =
            checkScreenshot(view, QStringLiteral("fancontrol/") + state.name, false);
        EXPECT_EQ(image.width(), SensorDetailPopoverView::popoverWidth * image.devicePixelRatio());
        // Text colours as made readable on the light background.
        const QColor background = appearancePalette(false).color(QPalette::Window);
        EXPECT_EQ(shows(image, readableOn(MenuBarColors::hot, background)), state.red);
        EXPECT_EQ(shows(image, readableOn(MenuBarColors::warm, background)), state.orange);
    }
}

TEST_F(Section, SwitchDrivesTheRealDaemonAndReportsOneThatCannotStart) {
    dir.write(installed, "not a program\n", 04755);
    open();
    flipSwitch();
    EXPECT_FALSE(manualSwitch().isChecked()) << "a daemon that cannot start";
    EXPECT_EQ(content->findChild<QLabel*>("daemonProblem")->text().toStdString(),
              "Manual control stopped: the sensor helper could not be started.");

    const std::string built = VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";
    ASSERT_TRUE(isExecutableFile(built));
    FakeSysfs board; // a cool CPU keeps the daemon's failsafe out of the way
    board.addHwmon(1, "platform/coretemp.0", {{"name", "coretemp"}, {"temp1_input", "45000"}});
    // Fan 1 reports its maximum and is given speeds; fan 2 does not and is given duties.
    FakeSysfs::Attributes fans = {
        {"name", "nct6775"}, {"pwm1", "100"}, {"pwm2", "120"}, {"fan1_max", "6000"}};
    for (const std::string n : {"1", "2"})
        fans.insert({{"fan" + n + "_input", "2000"}, {"pwm" + n + "_enable", "5"}});
    const std::string chip = board.addHwmon(2, "platform/nct6775.656", fans);
    dir.writeScript(installed,
                    "echo $$ > \"" + dir.str() + "/pid\"\nexec " + built + " \"$@\" --sysfs-root " +
                        board.root() + "\n",
                    04755);
    const auto duty = [&](const char* file) { return firstInteger(board.read(chip + "/" + file)); };
    settings->setFanPercentages({{0, 0}, {1, 75}});
    open();
    flipSwitch();
    // 0 % is held at the 20 % minimum (1200 RPM of 6000, duty 51), and fan 2's 75 % is
    // duty 191 of 255. The slider offers no less than the daemon sets.
    EXPECT_TRUE(eventually([&] { return duty("pwm1") == 51 && duty("pwm2") == 191; }));
    EXPECT_EQ(duty("pwm1_enable"), 1);
    for (FanSliderRow* row : content->findChildren<FanSliderRow*>()) {
        if (row->fanId() == 0 && row->isVisibleTo(content.get())) {
            EXPECT_EQ(row->slider()->value(), 20);
        }
        if (row->fanId() == 1 && row->isVisibleTo(content.get()))
            row->slider()->setValue(50);
    }
    EXPECT_TRUE(eventually([&] { return duty("pwm2") == 128; })) << duty("pwm2");

    // Saved as the slider moved, before the switch went off.
    EXPECT_EQ(settings->fanPercentages(), (std::map<long long, double>{{0, 0}, {1, 50}}));
    flipSwitch();
    EXPECT_TRUE(eventually([&] { return !thermal().isDaemonRunning(); }));
    const auto handedBack = [&] {
        return std::vector({duty("pwm1"), duty("pwm2"), duty("pwm1_enable"),
                            duty("pwm2_enable")}) == std::vector<long long>({100, 120, 5, 5});
    };
    EXPECT_TRUE(eventually(handedBack));
}

} // namespace
