// The arithmetic and texts of the fan section and the spinning icon, as tables.
#include "views/menubar/MenuBarColor.h"
#include "views/popovers/CommandThrottle.h"
#include "views/popovers/FanControlText.h"
#include "views/popovers/FanSpinnerIcon.h"
#include "views/popovers/PopoverStyle.h"
#include "views/popovers/SpinnerMotion.h"

#include <QScreen>
#include <QTimer>
#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace std::chrono_literals;

TEST(SpinnerMotion, DegreesPerSecondFollowTheDurationUpToTenTurnsASecond) {
    const struct {
        double duration;
        double degreesPerSecond;
    } cases[] = {
        {0.05, 3600}, {0.1, 3600}, {0.3, 1200}, {1.15, 360 / 1.15}, {2.0, 180}, {0.0, 3600},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(spinnerDegreesPerSecond(c.duration), c.degreesPerSecond) << c.duration;
}

TEST(SpinnerMotion, InputsComeFromTheFansMeanSpeedOverThePublishedMaximum) {
    const struct {
        const char* name;
        std::vector<FanInfo> fans;
        double fanSpeed;
        double fanMaxSpeed;
        SpinnerInputs expected;
    } cases[] = {
        {"fans averaging 3000 of 6000", {{0, 2000}, {1, 4000}}, 2000, 6000, {true, 1.15}},
        {"one fan at full speed", {{0, 6000}}, 6000, 6000, {true, 0.3}},
        {"above the maximum", {{0, 9000}}, 9000, 6000, {true, 0.3}},
        {"fans standing still", {{0, 0}, {1, 0}}, 0, 6000, {false, 2.0}},
        {"no fans: the published speed", {}, 1500, 6000, {true, 2.0 - 1.7 * 0.25}},
        {"no fans, nothing turns", {}, 0, 6000, {false, 2.0}},
        {"no maximum: no load", {{0, 1000}}, 1000, 0, {true, 2.0}},
    };
    for (const auto& c : cases) {
        const SpinnerInputs inputs = spinnerInputs(c.fans, c.fanSpeed, c.fanMaxSpeed);
        EXPECT_EQ(inputs.isSpinning, c.expected.isSpinning) << c.name;
        EXPECT_NEAR(inputs.duration, c.expected.duration, 1e-12) << c.name;
    }
}

TEST(SpinnerMotion, AngleDependsOnlyOnTheClock) {
    const struct {
        bool spinning;
        double duration;
        double seconds;
        double angle;
    } cases[] = {
        {false, 2.0, 1234.5, 0}, {true, 2.0, 0.5, 90},    {true, 2.0, 2.5, 90},
        {true, 2.0, 1.0, 180},   {true, 0.05, 0.1, 0},    {true, 0.05, 0.125, 90},
        {true, 1.0, -0.25, 270}, {true, 2.0, 7.5e8, 0.0},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(spinnerAngle(c.spinning, c.duration, c.seconds), c.angle, 1e-6)
            << c.duration << " s a turn at " << c.seconds;
}

TEST(SpinnerMotion, ReferenceDateIsTheFirstOf2001InUtc) {
    using std::chrono::system_clock;
    const system_clock::time_point reference{978307200s};
    EXPECT_EQ(secondsSinceReferenceDate(reference), 0.0);
    EXPECT_EQ(secondsSinceReferenceDate(reference + 24h + 500ms), 86400.5);
    EXPECT_EQ(secondsSinceReferenceDate(system_clock::time_point{}), -978307200.0);
}

TEST(FanSpinnerIcon, DrawsFramesOnlyWhileShownAndSpinning) {
    QWidget window;
    auto* icon = new FanSpinnerIcon(28, &window);
    icon->setDuration(1.15);
    const auto* frames = icon->findChild<QTimer*>();
    ASSERT_NE(frames, nullptr);

    icon->setSpinning(true);
    EXPECT_FALSE(icon->isAnimating()) << "not shown yet";
    window.show();
    EXPECT_TRUE(icon->isAnimating());
    const double rate = icon->screen()->refreshRate();
    EXPECT_EQ(frames->interval(), static_cast<int>(std::lround(1000.0 / rate)));

    icon->setSpinning(false);
    EXPECT_FALSE(icon->isAnimating());
    EXPECT_EQ(icon->currentAngle(), 0.0);
    icon->setSpinning(true);
    EXPECT_TRUE(icon->isAnimating());
    window.hide();
    EXPECT_FALSE(icon->isAnimating());
    window.show();
    EXPECT_TRUE(icon->isAnimating());
}

TEST(FanSpinnerIcon, TakesItsAngleFromTheClock) {
    QWidget window;
    auto* icon = new FanSpinnerIcon(28, &window);
    icon->setDuration(2.0);
    icon->setSpinning(true);
    const auto before = std::chrono::system_clock::now();
    window.show();
    const auto after = std::chrono::system_clock::now();
    // 180 degrees a second: the angle lies between the clock's angles around the show.
    const double low = std::fmod(180.0 * secondsSinceReferenceDate(before), 360.0);
    const double high = std::fmod(180.0 * secondsSinceReferenceDate(after), 360.0);
    const double angle = icon->currentAngle();
    if (low <= high) {
        EXPECT_GE(angle, low);
        EXPECT_LE(angle, high);
    } else { // wrapped past 360 in between
        EXPECT_TRUE(angle >= low || angle <= high) << angle;
    }
    EXPECT_TRUE(icon->symbolName() == "fan.fill");
}

TEST(FanControlText, TargetSpeedIsThePercentageOfTheMaximum) {
    const struct {
        double percent;
        double max;
        double rpm;
        const char* text;
    } cases[] = {
        {50, 6000, 3000, "50% — 3000 RPM"},   {0, 6000, 0, "0% — 0 RPM"},
        {25, 6000, 1500, "25% — 1500 RPM"},   {100, 3000, 3000, "100% — 3000 RPM"},
        {33.4, 5000, 1670, "33% — 1670 RPM"},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(targetRpm(c.percent, c.max), c.rpm) << c.percent;
        EXPECT_EQ(sliderValueText(c.percent, targetRpm(c.percent, c.max)),
                  QString::fromUtf8(c.text));
    }
    EXPECT_EQ(fanFigureText("Min: ", 1200.9), "Min: 1200");
    EXPECT_EQ(fanFigureText("Target: ", 0), "Target: 0");
    EXPECT_EQ(fanFigureText("Max: ", 6000), "Max: 6000");
}

TEST(FanControlText, StatusNamesTheModeOrTheLoad) {
    const QColor green = PopoverStyle::green, orange = MenuBarColors::warm,
                 red = MenuBarColors::hot;
    const struct {
        bool manual;
        long long speed;
        long long max;
        FanStatus expected;
    } cases[] = {
        {true, 0, 6000, {"Manual override", orange, std::nullopt}},
        {true, 5000, 6000, {"Manual override", orange, std::nullopt}},
        {false, 0, 6000, {"Idle — fans off", green, std::nullopt}},
        {false, 1200, 6000, {"20% capacity", green, 0.2}},
        {false, 3000, 6000, {"50% capacity", green, 0.5}},
        {false, 3060, 6000, {"51% capacity", orange, 0.51}},
        {false, 4800, 6000, {"80% capacity", orange, 0.8}},
        {false, 4860, 6000, {"81% capacity", red, 0.81}},
        {false, 7000, 6000, {"116% capacity", red, 7000.0 / 6000.0}},
    };
    for (const auto& c : cases) {
        const FanStatus status = fanStatus(c.manual, c.speed, c.max);
        EXPECT_EQ(status.text, c.expected.text) << c.speed;
        EXPECT_EQ(status.color, c.expected.color) << c.speed;
        ASSERT_EQ(status.load.has_value(), c.expected.load.has_value()) << c.speed;
        if (status.load) {
            EXPECT_DOUBLE_EQ(*status.load, *c.expected.load) << c.speed;
        }
    }
}

TEST(CommandThrottle, LetsOneCommandThroughPerGap) {
    CommandThrottle throttle(200ms);
    const CommandThrottle::Clock::time_point start{};
    const struct {
        std::chrono::milliseconds at;
        bool allowed;
    } steps[] = {
        {0ms, true},    {50ms, false},  {199ms, false}, {200ms, true},
        {250ms, false}, {399ms, false}, {400ms, true},  {1000ms, true},
    };
    for (const auto& step : steps)
        EXPECT_EQ(throttle.allow(start + step.at), step.allowed) << step.at.count() << " ms";
    throttle.reset();
    EXPECT_TRUE(throttle.allow(start + 1001ms)) << "after a reset the next goes at once";
}

} // namespace
