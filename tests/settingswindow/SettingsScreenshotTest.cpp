#include "SettingsWindowTestSupport.h"

#include "views/settings/SettingsView.h"
#include "views/settings/SettingsWindowController.h"

#include <QDir>
#include <QImage>
#include <QScrollArea>
#include <QScrollBar>

namespace {

// Saves every tab of the window in light and dark under screenshots/settings/ in the
// build folder, for a person to look at, and checks the pixels that say which
// appearance was drawn.
class SettingsScreenshots : public SettingsWindowTest,
                            public testing::WithParamInterface<AppearanceMode> {};

QString screenshotDir() {
    return QStringLiteral(VORLUNE_BINARY_DIR "/screenshots/settings");
}

QImage capture(QWidget& window) {
    QCoreApplication::processEvents();
    return window.grab().toImage();
}

TEST_P(SettingsScreenshots, EveryTabIsSavedInTheAppearance) {
    const bool dark = GetParam() == AppearanceMode::dark;
    settings->setAppearanceMode(GetParam());
    SettingsWindowController controller(
        *settings, [] {}, LaunchAtLogin(configDir(), "/usr/bin/vorlune"));
    controller.showSettings();
    QWidget* window = controller.window();
    ASSERT_NE(window, nullptr);
    auto* tabs = window->findChild<SettingsView*>();
    ASSERT_NE(tabs, nullptr);
    ASSERT_TRUE(QDir().mkpath(screenshotDir()));

    const char* names[] = {"general", "monitors", "appearance", "about"};
    const QString suffix = dark ? QStringLiteral("dark") : QStringLiteral("light");
    for (int i = 0; i < tabs->count(); ++i) {
        SCOPED_TRACE(names[i]);
        tabs->setCurrentIndex(i);
        const QImage image = capture(*window);
        ASSERT_EQ(image.size(), QSize(450, 500) * image.devicePixelRatio());
        const QString path = QStringLiteral("%1/%2-%3.png").arg(screenshotDir(), names[i], suffix);
        EXPECT_TRUE(image.save(path)) << path.toStdString();

        // The bottom-left corner is window background on every tab.
        const qreal background = QColor(image.pixel(2, image.height() - 3)).lightnessF();
        if (dark)
            EXPECT_LT(background, 0.4);
        else
            EXPECT_GT(background, 0.8);

        // The long Monitors tab scrolls; its lower half gets a picture of its own.
        if (auto* page = qobject_cast<QScrollArea*>(tabs->currentWidget());
            page && page->verticalScrollBar()->maximum() > 0) {
            page->verticalScrollBar()->setValue(page->verticalScrollBar()->maximum());
            const QString lower =
                QStringLiteral("%1/%2-%3-bottom.png").arg(screenshotDir(), names[i], suffix);
            EXPECT_TRUE(capture(*window).save(lower)) << lower.toStdString();
            page->verticalScrollBar()->setValue(0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, SettingsScreenshots,
                         testing::Values(AppearanceMode::light, AppearanceMode::dark),
                         [](const testing::TestParamInfo<AppearanceMode>& info) {
                             return info.param == AppearanceMode::dark ? "Dark" : "Light";
                         });

} // namespace
