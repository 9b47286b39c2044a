// Pictures of the fan popover in the fan section's three states, for people to look at,
// with a check of the pixels that tell the states apart.
#include "FanControlRig.h"

#include "views/menubar/MenuBarColor.h"
#include "views/popovers/FanControlQueue.h"
#include "views/popovers/FanDetailContent.h"
#include "views/popovers/SensorDetailPopoverView.h"
#include "views/settings/ToggleSwitch.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPushButton>
#include <QStyleFactory>
#include <QThreadPool>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

QString screenshotPath(const QString& name) {
    const QString dir = QStringLiteral(VORLUNE_BINARY_DIR "/screenshots/fancontrol");
    QDir().mkpath(dir);
    return dir + QLatin1Char('/') + name + QStringLiteral(".png");
}

int pixelsNear(const QImage& image, const QColor& colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (std::abs(pixel.red() - colour.red()) < 24 &&
                std::abs(pixel.green() - colour.green()) < 24 &&
                std::abs(pixel.blue() - colour.blue()) < 24)
                ++count;
        }
    return count;
}

class FanScreenshots : public testing::Test, public FanControlRig {
protected:
    void SetUp() override {
        if (!runsAsRoot())
            GTEST_SKIP() << "an installed helper must be root-owned";
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        settings.setAppearanceMode(AppearanceMode::light);
        settings.applyAppearance(*qApp);
        publishFans({{0, 2400, 1200, 6000, 2400}, {1, 1800, 1000, 6000, 1800}});
    }

    QImage shoot(const QString& name, const std::function<void(FanDetailContent&)>& prepare = {}) {
        SensorDetailPopoverView view(SensorType::fan, monitor, settings, [] {});
        view.show();
        settle();
        auto* section = view.findChild<FanDetailContent*>("fanSection");
        EXPECT_NE(section, nullptr);
        if (prepare && section)
            prepare(*section);
        view.adjustSize();
        settle();
        const QImage image = view.grab().toImage();
        EXPECT_TRUE(image.save(screenshotPath(name))) << name.toStdString();
        EXPECT_EQ(image.width(), SensorDetailPopoverView::popoverWidth * image.devicePixelRatio());
        return image;
    }
};

TEST_F(FanScreenshots, SetupCard) {
    const QImage image = shoot(QStringLiteral("fan-setup"));
    EXPECT_EQ(pixelsNear(image, MenuBarColors::hot), 0) << "no failure line yet";
    EXPECT_EQ(pixelsNear(image, MenuBarColors::warm), 0);

    InstallScriptLock lock;
    // A prompt the user takes a moment to dismiss.
    dir.writeScript(elevation, "sleep 0.5\nexit 126\n");
    const QImage installing =
        shoot(QStringLiteral("fan-installing"), [](FanDetailContent& section) {
            section.findChild<QPushButton*>("enableButton")->click();
            EXPECT_TRUE(section.isInstalling());
        });
    EXPECT_EQ(pixelsNear(installing, MenuBarColors::hot), 0);
    fanControlQueue(monitor).waitForDone();

    const QImage failed = shoot(QStringLiteral("fan-setup-failed"), [](FanDetailContent& section) {
        section.findChild<QPushButton*>("enableButton")->click();
        settleUntil([&] { return !section.isInstalling(); });
    });
    EXPECT_GT(pixelsNear(failed, MenuBarColors::hot), 20) << "the red failure line";
}

TEST_F(FanScreenshots, InstalledAutomatic) {
    installRecorder();
    const QImage image = shoot(QStringLiteral("fan-automatic"));
    EXPECT_EQ(pixelsNear(image, MenuBarColors::warm), 0) << "no warning in automatic mode";
}

TEST_F(FanScreenshots, InstalledManual) {
    installRecorder();
    settings.setFanPercentages({{0, 25}, {1, 75}});
    const QImage image = shoot(QStringLiteral("fan-manual"), [](FanDetailContent& section) {
        section.findChild<ToggleSwitch*>("manualSwitch")->click();
        settleUntil([&] { return !section.isInstalling(); });
        EXPECT_TRUE(section.isManualMode());
    });
    EXPECT_GT(pixelsNear(image, MenuBarColors::warm), 20) << "the orange status and warning";
    thermal().stopDaemon();
}

} // namespace
