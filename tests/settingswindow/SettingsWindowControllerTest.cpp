#include "SettingsWindowTestSupport.h"

#include "settings/AppearancePalette.h"
#include "views/settings/SettingsView.h"
#include "views/settings/SettingsWindowController.h"

#include <QPointer>
#include <QScreen>

namespace {

class SettingsWindowControllerTest : public SettingsWindowTest {
protected:
    void SetUp() override {
        SettingsWindowTest::SetUp();
        controller = std::make_unique<SettingsWindowController>(
            *settings, [this] { ++syncs; },
            LaunchAtLogin(configDir(), QCoreApplication::applicationFilePath()));
    }

    static int visibleSettingsWindows() {
        int count = 0;
        for (const QWidget* widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->windowTitle() == "Vorlune Settings")
                ++count;
        return count;
    }

    static void dropClosedWindows() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    int syncs = 0;
    std::unique_ptr<SettingsWindowController> controller;
};

TEST_F(SettingsWindowControllerTest, BuildsATitledClosableFixedSizeCentredWindow) {
    EXPECT_EQ(controller->window(), nullptr);
    controller->showSettings();
    QWidget* window = controller->window();
    ASSERT_NE(window, nullptr);

    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isWindow());
    EXPECT_EQ(window->windowTitle(), "Vorlune Settings");
    EXPECT_EQ(window->size(), QSize(450, 500));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_EQ(window->windowModality(), Qt::NonModal);
    const Qt::WindowFlags flags = window->windowFlags();
    EXPECT_TRUE(flags & Qt::WindowTitleHint);
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    EXPECT_FALSE(flags & Qt::WindowMinimizeButtonHint);
    EXPECT_FALSE(flags & Qt::WindowMaximizeButtonHint);
    EXPECT_NE(window->findChild<SettingsView*>(), nullptr);

    const QPoint screenCentre = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((window->geometry().center() - screenCentre).manhattanLength(), 2);
}

TEST_F(SettingsWindowControllerTest, ShowingTwiceKeepsOneWindowAndClosingDropsIt) {
    controller->showSettings();
    QPointer<QWidget> first = controller->window();
    controller->showSettings();
    EXPECT_EQ(controller->window(), first.data());
    EXPECT_EQ(visibleSettingsWindows(), 1);

    ASSERT_TRUE(first->close());
    EXPECT_FALSE(first->isVisible());
    dropClosedWindows();
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(controller->window(), nullptr);

    controller->showSettings();
    ASSERT_NE(controller->window(), nullptr);
    EXPECT_TRUE(controller->window()->isVisible());
    EXPECT_EQ(visibleSettingsWindows(), 1);
}

TEST_F(SettingsWindowControllerTest, AHiddenWindowIsReplacedNotReopened) {
    controller->showSettings();
    QPointer<QWidget> first = controller->window();
    first->hide();
    controller->showSettings();
    EXPECT_NE(controller->window(), first.data());
    dropClosedWindows();
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(visibleSettingsWindows(), 1);
}

TEST_F(SettingsWindowControllerTest, WindowTakesTheAppearanceWhenShownAndWhenTheModeChanges) {
    const auto lightness = [this] {
        return controller->window()->palette().color(QPalette::Window).lightnessF();
    };
    settings->setAppearanceMode(AppearanceMode::dark);
    controller->showSettings();
    EXPECT_LT(lightness(), 0.5);

    settings->setAppearanceMode(AppearanceMode::light);
    EXPECT_GT(lightness(), 0.5);

    // Bringing the open window forward applies the mode again.
    controller->window()->setPalette(appearancePalette(true));
    controller->showSettings();
    EXPECT_GT(lightness(), 0.5);
}

TEST_F(SettingsWindowControllerTest, ItemSwitchesInTheWindowRunTheResync) {
    controller->showSettings();
    auto* cpu = child<QAbstractButton>(*controller->window(), QStringLiteral("persistCPU"));
    ASSERT_NE(cpu, nullptr);
    cpu->click();
    EXPECT_EQ(syncs, 1);
    EXPECT_TRUE(settings->persistCPU());
}

} // namespace
