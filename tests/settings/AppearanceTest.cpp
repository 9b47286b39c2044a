#include "SettingsTestSupport.h"

#include "settings/AppSettings.h"

#include <QApplication>
#include <QSignalSpy>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

const QColor darkWindow(53, 53, 53);
const QColor lightWindow(239, 239, 239);

QColor applicationWindowColour() {
    return QGuiApplication::palette().color(QPalette::Window);
}

class Appearance : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        QGuiApplication::setPalette(QPalette());
        platformWindow = applicationWindowColour();
    }
    void TearDown() override { QGuiApplication::setPalette(QPalette()); }

    std::unique_ptr<AppSettings> open(std::unique_ptr<SystemColorScheme> scheme) {
        return std::make_unique<AppSettings>(dir.filePath(QStringLiteral("vorlune.conf")),
                                             std::move(scheme));
    }

    QTemporaryDir dir;
    QColor platformWindow;
};

TEST_F(Appearance, LightAndDarkSetFusionPalettesAndSystemWithoutPortalKeepsThePlatforms) {
    const auto settings = open(std::make_unique<SystemColorScheme>(QString()));
    auto& application = *qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    // A colour the palettes never use, so a leftover shows.
    QPalette odd;
    odd.setColor(QPalette::Window, QColor(1, 2, 3));
    QGuiApplication::setPalette(odd);

    settings->setAppearanceMode(AppearanceMode::dark);
    settings->applyAppearance(application);
    EXPECT_EQ(applicationWindowColour(), darkWindow);
    EXPECT_EQ(QGuiApplication::palette().color(QPalette::WindowText), QColor(Qt::white));

    settings->setAppearanceMode(AppearanceMode::light);
    settings->applyAppearance(application);
    EXPECT_EQ(applicationWindowColour(), lightWindow);
    EXPECT_EQ(QGuiApplication::palette().color(QPalette::WindowText), QColor(Qt::black));

    settings->setAppearanceMode(AppearanceMode::dark);
    settings->applyAppearance(application);
    settings->setAppearanceMode(AppearanceMode::system);
    EXPECT_EQ(settings->appearancePalette(), std::nullopt);
    settings->applyAppearance(application);
    EXPECT_EQ(applicationWindowColour(), platformWindow);
}

TEST_F(Appearance, WindowTakesExplicitPaletteOrFollowsTheApplication) {
    const auto settings = open(std::make_unique<SystemColorScheme>(QString()));
    QWidget window;

    settings->setAppearanceMode(AppearanceMode::dark);
    settings->applyAppearance(window);
    EXPECT_EQ(window.palette().color(QPalette::Window), darkWindow);
    EXPECT_TRUE(window.testAttribute(Qt::WA_SetPalette));

    settings->setAppearanceMode(AppearanceMode::light);
    settings->applyAppearance(window);
    EXPECT_EQ(window.palette().color(QPalette::Window), lightWindow);

    settings->setAppearanceMode(AppearanceMode::system);
    settings->applyAppearance(window);
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetPalette));
    EXPECT_EQ(window.palette().color(QPalette::Window), applicationWindowColour());
}

class PortalAppearance : public Appearance {
protected:
    void SetUp() override {
        Appearance::SetUp();
        if (bus.start().isEmpty())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
    }

    PrivateBus bus;
    FakePortal portal;
};

TEST_F(PortalAppearance, ReadsTheNestedColorSchemeAndFollowsItsChanges) {
    ASSERT_TRUE(portal.start(bus.address(), 1));
    auto scheme = std::make_unique<SystemColorScheme>(bus.address());
    EXPECT_EQ(scheme->prefersDark(), true);
    const auto settings = open(std::move(scheme));
    auto& application = *qobject_cast<QGuiApplication*>(QCoreApplication::instance());

    EXPECT_TRUE(settings->isDarkAppearance());
    settings->applyAppearance(application);
    EXPECT_EQ(applicationWindowColour(), darkWindow);
    settings->applyTheme(ThemePreset::mono);
    EXPECT_EQ(settings->cpuColorHex(), "FFFFFF");

    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    portal.setColorScheme(2);
    ASSERT_TRUE(notices.wait(5000)) << "SettingChanged did not arrive";
    EXPECT_FALSE(settings->isDarkAppearance());
    EXPECT_EQ(applicationWindowColour(), lightWindow) << "system re-applies on the change";

    // With an explicit mode the desktop's change leaves the palette alone.
    settings->setAppearanceMode(AppearanceMode::dark);
    settings->applyAppearance(application);
    notices.clear();
    portal.setColorScheme(0);
    ASSERT_TRUE(notices.wait(5000));
    EXPECT_EQ(applicationWindowColour(), darkWindow);
    settings->setAppearanceMode(AppearanceMode::system);
    EXPECT_FALSE(settings->isDarkAppearance()) << "0, no preference, is not dark";
}

TEST_F(PortalAppearance, NoPortalOnTheBusMeansNoAnswer) {
    SystemColorScheme scheme(bus.address());
    EXPECT_EQ(scheme.prefersDark(), std::nullopt);
}

} // namespace
