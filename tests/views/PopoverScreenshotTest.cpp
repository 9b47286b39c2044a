// Every popover in light and dark, saved under screenshots/popovers/ in the build tree,
// and checked for what goes wrong in a picture: clipped text, widgets out of place,
// colours not taken from the appearance.
#include "PopoverRig.h"
#include "support/WindowCheck.h"

#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/SensorDetailPopoverView.h"

#include <QApplication>
#include <QStyleFactory>

#include <cmath>

namespace {

TEST(PopoverScreenshots, EveryPopoverInLightAndDark) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    PopoverRig rig;
    for (int tick = 0; tick < 60; ++tick) { // a minute of varied readings: graphs with a shape
        const double wave = 0.5 + 0.4 * std::sin(tick / 6.0);
        SystemSample sample;
        sample.cpuUsage = wave;
        sample.coreUsages = {0.1, 0.5, 0.9, 0.3, 0.05, 0.98, 0.2, 0.4};
        sample.memory = {5.0 + wave, 16.0, 4.0, 2.0, 1.5, 0.8};
        sample.disk = {120.4, 500.0};
        sample.network = {wave * 2e6, (1.0 - wave) * 40000.0};
        sample.thermal = {
            50.0 + 25.0 * wave,
            58.2,
            {{"tc0", "CPU Die", 66.0}, {"gpu0", "GPU Edge", 58.0}},
            {{0, "", 2400.7, 1200.0, 6000.0, 2400.0}, {1, "", 0.0, 1200.0, 6000.0, 0.0}}};
        sample.details = {DetailFigure::all,
                          {{"Isolated Web Co", 1.874}, {"gnome-shell", 0.31}, {"vorlune", 0.012}},
                          {{"firefox", 2.4e9}, {"Xwayland", 3.1e8}, {"gnome-shell", 2.9e8}},
                          std::uint64_t{4} << 30,
                          {{"/", 120.4e9, 500e9},
                           {"/media/user/A very long volume label on a stick", 3e9, 15.9e9}}};
        rig.monitor.publish(sample);
    }
    for (const bool dark : {false, true}) {
        rig.settings.setAppearanceMode(dark ? AppearanceMode::dark : AppearanceMode::light);
        rig.settings.applyAppearance(*qApp);
        std::vector<std::pair<QString, std::unique_ptr<QWidget>>> views;
        views.emplace_back("main", std::make_unique<MonitorPopoverView>(rig.monitor, rig.settings,
                                                                        [](SensorType) {}));
        for (SensorType kind : allCases<SensorType>())
            views.emplace_back(
                "detail-" + QString::fromLatin1(sensorKeyWord(kind).data()),
                std::make_unique<SensorDetailPopoverView>(kind, rig.monitor, rig.settings, [] {}));
        for (auto& [name, view] : views) {
            SCOPED_TRACE(name.toStdString() + (dark ? " dark" : " light"));
            view->show();
            view->adjustSize();
            settle();
            const QImage image =
                checkScreenshot(*view, "popovers/" + name + (dark ? "-dark" : "-light"), dark);
            EXPECT_EQ(image.width(), view->sizeHint().width() * image.devicePixelRatio());
        }
    }
}

} // namespace
