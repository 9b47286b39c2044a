// Grabs every popover to a PNG under the build tree for people to look at, and checks
// the pixels that matter: the appearance's background and the graphs in their colours.
#include "PopoverRig.h"

#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/SensorDetailPopoverView.h"
#include "views/popovers/SparklineView.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QStyleFactory>
#include <gtest/gtest.h>

#include <cmath>

namespace {

QString screenshotPath(const QString& name) {
    const QString dir = QStringLiteral(VORLUNE_BINARY_DIR "/screenshots/popovers");
    QDir().mkpath(dir);
    return dir + QLatin1Char('/') + name + QStringLiteral(".png");
}

// A minute of varied readings, so every graph has a shape.
void publishAMinute(SystemMonitor& monitor) {
    for (int tick = 0; tick < 60; ++tick) {
        const double wave = 0.5 + 0.4 * std::sin(tick / 6.0);
        SystemSample sample = knownSample();
        sample.cpuUsage = tick == 59 ? 0.425 : wave;
        sample.coreUsages = {0.1, 0.5, 0.9, 0.3, 0.65, 0.2, 0.8, 0.45};
        sample.memory.used = tick == 59 ? 6.3 : 5.0 + wave;
        sample.network = {tick == 59 ? 1572864.0 : wave * 2e6,
                          tick == 59 ? 3072.0 : (1.0 - wave) * 40000.0};
        sample.thermal.cpuTemp = tick == 59 ? 65.7 : 50.0 + 25.0 * wave;
        monitor.publish(sample);
    }
}

struct Screenshots : ::testing::Test {
    void SetUp() override {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        publishAMinute(rig.monitor);
    }
    void TearDown() override {
        rig.settings.setAppearanceMode(AppearanceMode::light);
        rig.settings.applyAppearance(*qApp);
    }

    void useAppearance(AppearanceMode mode) {
        rig.settings.setAppearanceMode(mode);
        rig.settings.applyAppearance(*qApp);
        settle();
    }

    // Shows the view at its own size, lets it settle and saves its picture.
    QImage shoot(QWidget& view, const QString& name) {
        view.show();
        view.adjustSize();
        settle();
        const QImage image = view.grab().toImage();
        EXPECT_TRUE(image.save(screenshotPath(name))) << name.toStdString();
        return image;
    }

    PopoverRig rig;
};

int pixelsNear(const QImage& image, const QColor& colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (std::abs(pixel.red() - colour.red()) < 30 &&
                std::abs(pixel.green() - colour.green()) < 30 &&
                std::abs(pixel.blue() - colour.blue()) < 30)
                ++count;
        }
    return count;
}

TEST_F(Screenshots, MainPopoverInLightAndDark) {
    for (auto [mode, name, dark] : {std::tuple{AppearanceMode::light, "main-light", false},
                                    {AppearanceMode::dark, "main-dark", true}}) {
        useAppearance(mode);
        MonitorPopoverView view(rig.monitor, rig.settings, [](SensorType) {});
        const QImage image = shoot(view, name);
        EXPECT_EQ(image.width(), MonitorPopoverView::popoverWidth * image.devicePixelRatio());
        EXPECT_EQ(image.height(), view.sizeHint().height() * image.devicePixelRatio());
        EXPECT_EQ(image.pixelColor(2, 2).lightnessF() < 0.5, dark) << name;

        // Each graph is drawn in its section's colour.
        const auto graphs = view.findChildren<SparklineView*>();
        ASSERT_EQ(graphs.size(), 4);
        for (SparklineView* graph : graphs) {
            const QImage picture = graph->grab().toImage();
            EXPECT_GT(pixelsNear(picture, graph->color()), picture.width() / 2)
                << name << " " << graph->parentWidget()->objectName().toStdString();
        }
    }
}

TEST_F(Screenshots, EveryDetailPopover) {
    for (auto [mode, suffix] :
         {std::pair{AppearanceMode::light, "light"}, {AppearanceMode::dark, "dark"}}) {
        useAppearance(mode);
        for (SensorType kind : allCases<SensorType>()) {
            SensorDetailPopoverView view(kind, rig.monitor, rig.settings, [] {});
            const QString name = QStringLiteral("detail-%1-%2")
                                     .arg(QString::fromLatin1(sensorKeyWord(kind).data()), suffix);
            const QImage image = shoot(view, name);
            EXPECT_EQ(image.width(),
                      SensorDetailPopoverView::popoverWidth * image.devicePixelRatio());
            for (SparklineView* graph : view.findChildren<SparklineView*>()) {
                const QImage picture = graph->grab().toImage();
                EXPECT_GT(pixelsNear(picture, graph->color()), picture.width() / 2)
                    << name.toStdString();
            }
        }
    }
}

} // namespace
