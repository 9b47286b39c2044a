// The fan section's three states and their texts, driven through its own controls.
#include "FanControlRig.h"

#include "monitors/HelperInstallation.h"
#include "views/menubar/MenuBarColor.h"
#include "views/popovers/ColoredProgressBar.h"
#include "views/popovers/FanDetailContent.h"
#include "views/popovers/FanSliderRow.h"
#include "views/popovers/FanSpinnerIcon.h"
#include "views/popovers/PopoverStyle.h"
#include "views/popovers/SensorAccent.h"
#include "views/popovers/SensorDetailPopoverView.h"
#include "views/settings/ToggleSwitch.h"

#include <QFontDatabase>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

const QString setupTitle = QStringLiteral("Fan control requires a one-time setup.");
const QString setupExplanation = QStringLiteral(
    "Installs a small helper to /usr/local/bin with admin privileges. Required once.");
const QString failureText = QStringLiteral("Installation failed or was cancelled.");
const QString warningText =
    QStringLiteral("Warning: Manual override bypasses automatic thermal management.");

QLabel* labelWithText(const QWidget* root, const QString& text) {
    for (auto* label : root->findChildren<QLabel*>())
        if (label->text() == text)
            return label;
    return nullptr;
}

struct Section : FanControlRig {
    FanDetailContent& open() {
        content = std::make_unique<FanDetailContent>(monitor, settings);
        content->show();
        settle();
        return *content;
    }
    QStringList texts() const { return shownTexts(content.get()); }
    template <typename T> T* child(const char* name) const {
        auto* found = content->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    std::unique_ptr<FanDetailContent> content;
};

class FanDetailContentTest : public testing::Test, public Section {
protected:
    void SetUp() override {
        if (!runsAsRoot())
            GTEST_SKIP() << "an installed helper must be root-owned";
    }
};

TEST_F(FanDetailContentTest, WithoutTheHelperOffersTheSetupAndNothingElse) {
    publishFans({{0, 2400, 1200, 6000, 2400}});
    open();
    const QStringList shown = texts();
    EXPECT_TRUE(shown.contains(setupTitle));
    EXPECT_TRUE(shown.contains(setupExplanation));
    EXPECT_TRUE(shown.contains("Enable Fan Control"));
    for (const QString& absent : {failureText, QStringLiteral("Manual Fan Override"),
                                  QStringLiteral("Status:"), QStringLiteral("Fan 1")})
        EXPECT_FALSE(shown.contains(absent)) << absent.toStdString();
    EXPECT_EQ(labelWithText(content.get(), setupExplanation)->foregroundRole(),
              QPalette::PlaceholderText);
    auto* button = child<QPushButton>("enableButton");
    EXPECT_FALSE(button->icon().isNull()) << "the lock.shield symbol";
    EXPECT_FALSE(child<QProgressBar>("installProgress")->isVisibleTo(content.get()));
}

// Pressing the button runs installHelper on the queue: "Installing..." until it ends,
// then the failure line, or the controls once the helper is installed.
TEST_F(FanDetailContentTest, EnableFanControlShowsProgressThenFailureThenTheControls) {
    InstallScriptLock lock;
    ASSERT_FALSE(fs::exists(fs::symlink_status(installScriptPath)));
    const fs::path go = dir.path() / "go";
    // Holds the prompt open until the test says go, then cancels it as pkexec does.
    dir.writeScript(elevation,
                    "while [ ! -e " + go.string() + " ]; do sleep 0.02; done\nexit 126\n");
    publishFans({{0, 2400, 1200, 6000, 2400}});
    open();
    auto* button = child<QPushButton>("enableButton");
    button->click();
    EXPECT_TRUE(content->isInstalling());
    EXPECT_TRUE(texts().contains("Installing..."));
    EXPECT_FALSE(texts().contains("Enable Fan Control"));
    EXPECT_FALSE(button->isEnabled());
    EXPECT_TRUE(child<QProgressBar>("installProgress")->isVisibleTo(content.get()));

    dir.writeFile(go, "");
    ASSERT_TRUE(settleUntil([&] { return !content->isInstalling(); }));
    EXPECT_TRUE(content->installFailed());
    EXPECT_TRUE(texts().contains(failureText));
    EXPECT_TRUE(texts().contains("Enable Fan Control"));
    EXPECT_EQ(PopoverStyle::textColor(child<QLabel>("installFailed")), MenuBarColors::hot);
    EXPECT_TRUE(button->isEnabled());
    EXPECT_FALSE(thermal().isHelperInstalled());
    EXPECT_FALSE(fs::exists(installScriptPath));

    // Pressed again with a prompt that is accepted.
    dir.writeScript(elevation, "exec \"$@\"\n");
    button->click();
    ASSERT_TRUE(settleUntil([&] { return !content->isInstalling(); }));
    EXPECT_TRUE(thermal().isHelperInstalled());
    EXPECT_FALSE(fs::exists(installScriptPath));
    const QStringList shown = texts();
    EXPECT_TRUE(shown.contains("Manual Fan Override"));
    EXPECT_TRUE(shown.contains("Fan 1"));
    EXPECT_FALSE(shown.contains(setupTitle));
}

TEST_F(FanDetailContentTest, AutomaticFansShowStatusAndReadOnlyRows) {
    installRecorder();
    publishFans({{0, 2400.7, 1200, 6000, 2400}, {1, 0, 1000.4, 5000, 0}});
    open();
    const QStringList shown = texts();
    for (const char* present :
         {"Manual Fan Override", "Status:", "40% capacity", "Fan 1", "2400 RPM", "Fan 2", "Idle",
          "Min: 1200", "Target: 2400", "Max: 6000", "Min: 1000", "Target: 0", "Max: 5000"})
        EXPECT_TRUE(shown.contains(QString::fromUtf8(present))) << present;
    EXPECT_FALSE(shown.contains(warningText));
    EXPECT_TRUE(content->findChildren<FanSliderRow*>().isEmpty());
    EXPECT_FALSE(child<ToggleSwitch>("manualSwitch")->isChecked());
    EXPECT_EQ(PopoverStyle::textColor(labelWithText(content.get(), "2400 RPM")),
              sensorAccentColor(SensorType::fan, settings));
    EXPECT_EQ(labelWithText(content.get(), "Fan 2")->foregroundRole(), QPalette::PlaceholderText);
    EXPECT_EQ(labelWithText(content.get(), "Max: 5000")->foregroundRole(),
              QPalette::PlaceholderText);

    // The status follows each reading: load colours, and no bar while idle.
    const struct {
        double speed;
        const char* text;
        QColor color;
        bool bar;
    } readings[] = {
        {4860, "81% capacity", MenuBarColors::hot, true},
        {3060, "51% capacity", MenuBarColors::warm, true},
        {0, "Idle — fans off", PopoverStyle::green, false},
    };
    auto* status = child<QLabel>("status");
    auto* bar = child<ColoredProgressBar>("statusBar");
    for (const auto& r : readings) {
        publishFans({{0, r.speed, 1200, 6000, r.speed}});
        settle();
        EXPECT_EQ(status->text(), QString::fromUtf8(r.text));
        EXPECT_EQ(PopoverStyle::textColor(status), r.color) << r.text;
        EXPECT_EQ(bar->isVisibleTo(content.get()), r.bar) << r.text;
        if (r.bar) {
            EXPECT_DOUBLE_EQ(bar->value(), r.speed / 6000);
            EXPECT_EQ(bar->color(), r.color);
        }
    }
    publishFans({{3, 1800, 900, 5000, 1800}});
    settle();
    EXPECT_TRUE(texts().contains("Fan 4")) << "ids count from 0, names from 1";
    EXPECT_FALSE(texts().contains("Fan 1"));
    publishFans({});
    settle();
    EXPECT_EQ(status->text(), QString::fromUtf8("Idle — fans off")) << "no fans at all";
    EXPECT_FALSE(texts().contains("Fan 4"));
}

TEST_F(FanDetailContentTest, ManualModeShowsTheWarningAndASliderPerFan) {
    installRecorder();
    settings.setFanPercentages({{0, 25}, {1, 40}});
    publishFans({{0, 2400, 1200, 6000, 2400}, {1, 1800, 1000, 5000, 1800}});
    open();
    child<ToggleSwitch>("manualSwitch")->click();
    ASSERT_TRUE(settleUntil([&] { return !content->isInstalling(); }));
    ASSERT_TRUE(content->isManualMode());

    const QStringList shown = texts();
    for (const char* present : {"Manual override", "Fan 1", "Fan 2", "25% — 1500 RPM",
                                "40% — 2000 RPM", "Min: 1200", "Target: 1800", "Max: 5000"})
        EXPECT_TRUE(shown.contains(QString::fromUtf8(present))) << present;
    EXPECT_TRUE(shown.contains(warningText));
    EXPECT_FALSE(shown.contains("2400 RPM")) << "no read-only rows";
    EXPECT_EQ(PopoverStyle::textColor(child<QLabel>("status")), MenuBarColors::warm);
    EXPECT_FALSE(child<ColoredProgressBar>("statusBar")->isVisibleTo(content.get()));

    QLabel* reading = labelWithText(content.get(), QString::fromUtf8("25% — 1500 RPM"));
    ASSERT_NE(reading, nullptr);
    EXPECT_EQ(reading->font().pointSizeF(), 10.0);
    EXPECT_EQ(reading->font().family(),
              QFontDatabase::systemFont(QFontDatabase::FixedFont).family());

    const auto rows = content->findChildren<FanSliderRow*>();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0]->slider()->value(), 25);
    EXPECT_EQ(rows[0]->slider()->minimum(), 0);
    EXPECT_EQ(rows[0]->slider()->maximum(), 100);
    rows[1]->slider()->setValue(60);
    EXPECT_TRUE(texts().contains(QString::fromUtf8("60% — 3000 RPM")));
    EXPECT_EQ(content->fanPercentages(), (std::map<long long, double>{{0, 25}, {1, 60}}));

    // A new reading updates the figures but leaves the sliders where the user put them.
    publishFans({{0, 2500, 1200, 6000, 1500}, {1, 3000, 1000, 5000, 3000}});
    settle();
    EXPECT_EQ(rows[1]->slider()->value(), 60);
    EXPECT_TRUE(texts().contains("Target: 3000"));
}

TEST(FanPopover, ShowsTheFanSectionAndTheSpinningSymbol) {
    FanControlRig rig;
    rig.publishFans({{0, 3000, 1200, 6000, 3000}});
    SensorDetailPopoverView view(SensorType::fan, rig.monitor, rig.settings, [] {});
    view.show();
    settle();
    auto* section = view.findChild<FanDetailContent*>("fanSection");
    ASSERT_NE(section, nullptr);
    EXPECT_TRUE(shownTexts(&view).contains(setupTitle)) << "no helper is installed";
    auto* icon = view.findChild<FanSpinnerIcon*>();
    ASSERT_NE(icon, nullptr);
    EXPECT_TRUE(icon->isSpinning());
    EXPECT_DOUBLE_EQ(icon->duration(), 1.15);
    EXPECT_TRUE(icon->isAnimating());

    rig.publishFans({{0, 0, 1200, 6000, 0}});
    settle();
    EXPECT_FALSE(icon->isSpinning());
    EXPECT_FALSE(icon->isAnimating());
    EXPECT_EQ(icon->currentAngle(), 0.0);
}

} // namespace
