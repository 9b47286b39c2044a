#include "support/SettingsHome.h"

#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

const QColor darkWindow(53, 53, 53), lightWindow(239, 239, 239);

QColor windowColour() {
    return QGuiApplication::palette().color(QPalette::Window);
}

void setWindowColour(QColor colour) {
    QPalette palette;
    palette.setColor(QPalette::Window, colour);
    QGuiApplication::setPalette(palette);
}

class Appearance : public testing::Test {
protected:
    void TearDown() override { QGuiApplication::setPalette(QPalette()); }
    QGuiApplication& application = *qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    SettingsHome home;
    std::unique_ptr<AppSettings> settings = home.open();
};

TEST_F(Appearance, EachItemTakesItsOwnExactStyleElseTheGlobalOne) {
    const std::pair<const char*, const char*> styleSettings[] = {{"cpu", "styleCPU"},
                                                                 {"memory", "styleMemory"},
                                                                 {"disk", "styleDisk"},
                                                                 {"networkIn", "styleNetworkIn"},
                                                                 {"networkOut", "styleNetworkOut"},
                                                                 {"network", "styleNetwork"},
                                                                 {"cpuTemp", "styleCPUTemp"},
                                                                 {"gpuTemp", "styleGPUTemp"},
                                                                 {"fan", "styleFan"}};
    settings->setPersistentDisplayStyle(PersistentStyle::textOnly);
    for (const auto& [item, setting] : styleSettings) {
        settings->setProperty(setting, QStringLiteral("Graph Only"));
        for (const auto& [asked, unused] : styleSettings)
            EXPECT_EQ(settings->effectiveStyle(asked) == PersistentStyle::graphOnly,
                      std::string_view(asked) == item)
                << setting << " set, asking " << asked;
        settings->setProperty(setting, QString());
    }
    const std::pair<const char*, PersistentStyle> ownStyles[] = {
        {"Graph Only", PersistentStyle::graphOnly},
        {"Graph & Text", PersistentStyle::graphAndText},
        {"graph only", PersistentStyle::textOnly},
        {"Graph Only ", PersistentStyle::textOnly},
        {"", PersistentStyle::textOnly},
        {"textOnly", PersistentStyle::textOnly}};
    for (const auto& [own, expected] : ownStyles) {
        settings->setStyleFan(QString::fromUtf8(own));
        EXPECT_EQ(settings->effectiveStyle("fan"), expected) << '"' << own << '"';
    }
    EXPECT_EQ(settings->effectiveStyle("temperature"), PersistentStyle::textOnly);
}

// Mono takes white or black from the appearance once, when applied; Mono Dark and Mono
// Light (stored crossed over) do not follow it.
TEST_F(Appearance, ThemesColourEveryItemForTheAppearanceAndNoticeOnceMoreWhenComplete) {
    struct Case {
        AppearanceMode mode;
        QColor window; // the application palette, for System
        ThemePreset preset;
        bool dark;
        QStringList colours; // cpu, memory, disk, network, temperature, fan
    };
    const QStringList black(6, "000000"), white(6, "FFFFFF");
    const Case cases[] = {
        {AppearanceMode::light, {}, ThemePreset::mono, false, black},
        {AppearanceMode::dark, {}, ThemePreset::mono, true, white},
        {AppearanceMode::system, QColor(127, 127, 127), ThemePreset::mono, true, white},
        {AppearanceMode::system, QColor(128, 128, 128), ThemePreset::mono, false, black},
        {AppearanceMode::dark, {}, ThemePreset::monoLight, true, black},
        {AppearanceMode::light, {}, ThemePreset::monoDark, false, white},
        {AppearanceMode::dark,
         {},
         ThemePreset::colorful,
         true,
         {"007AFF", "34C759", "FF9500", "AF52DE", "FF3B30", "5AC8FA"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(rawValue(c.preset)) + " under " + std::string(rawValue(c.mode)));
        if (c.window.isValid())
            setWindowColour(c.window);
        settings->setAppearanceMode(c.mode);
        EXPECT_EQ(settings->isDarkAppearance(), c.dark);
        std::vector<QStringList> seen;
        const auto connection =
            QObject::connect(settings.get(), &AppSettings::objectWillChange, [&] {
                seen.push_back({settings->cpuColorHex(), settings->memoryColorHex(),
                                settings->diskColorHex(), settings->networkColorHex(),
                                settings->temperatureColorHex(), settings->fanColorHex()});
            });
        settings->applyTheme(c.preset);
        QObject::disconnect(connection);
        EXPECT_EQ(settings->themePreset(), c.preset);
        ASSERT_EQ(seen.size(), 8u) << "the preset, six colours, and one more";
        EXPECT_EQ(seen.back(), c.colours);
    }
}

TEST_F(Appearance, LightAndDarkSetTheirPalettesAndSystemWithoutADesktopAnswerKeepsThePlatforms) {
    const QColor platform = windowColour();
    setWindowColour(QColor(1, 2, 3)); // a colour no palette uses, so a leftover shows
    QWidget window;
    const std::pair<AppearanceMode, QColor> cases[] = {{AppearanceMode::dark, darkWindow},
                                                       {AppearanceMode::light, lightWindow},
                                                       {AppearanceMode::dark, darkWindow},
                                                       {AppearanceMode::system, platform}};
    for (const auto& [mode, colour] : cases) {
        SCOPED_TRACE(rawValue(mode).data());
        settings->setAppearanceMode(mode);
        settings->applyAppearance(application);
        settings->applyAppearance(window);
        EXPECT_EQ(windowColour(), colour);
        EXPECT_EQ(window.palette().color(QPalette::Window), colour);
        EXPECT_EQ(window.testAttribute(Qt::WA_SetPalette), mode != AppearanceMode::system)
            << "under System the window follows the application";
    }
}

// The stand-in portal on a message bus of its own.
class FakePortal {
public:
    explicit FakePortal(unsigned scheme) {
        const QString runner = QStandardPaths::findExecutable(QStringLiteral("dbus-run-session"));
        if (runner.isEmpty())
            return;
        process.start(runner, {"--", VORLUNE_FAKE_PORTAL, QString::number(scheme)});
        if (process.waitForReadyRead(10000) && process.canReadLine()) {
            const QByteArray line = process.readLine().trimmed();
            if (line.startsWith("ready "))
                busAddress = QString::fromUtf8(line.mid(6));
        }
    }
    ~FakePortal() {
        process.closeWriteChannel(); // the portal ends, and with it the bus
        if (!process.waitForFinished(5000))
            process.kill();
    }
    void setScheme(unsigned scheme) { process.write(QByteArray::number(scheme) + "\n"); }

    QProcess process;
    QString busAddress;
};

TEST_F(Appearance, SystemFollowsTheDesktopPortalAndItsChanges) {
    FakePortal portal(1); // 1: prefers dark
    if (portal.busAddress.isEmpty())
        GTEST_SKIP() << "dbus-run-session cannot run the stand-in portal";
    settings = std::make_unique<AppSettings>(
        home.settingsFile(), std::make_unique<SystemColorScheme>(portal.busAddress));
    setWindowColour(QColor(250, 240, 230)); // light, and no palette of ours
    EXPECT_TRUE(settings->isDarkAppearance());
    settings->applyAppearance(application);
    EXPECT_EQ(windowColour(), darkWindow);

    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    portal.setScheme(2); // prefers light
    ASSERT_TRUE(notices.wait(5000)) << "SettingChanged did not arrive";
    EXPECT_FALSE(settings->isDarkAppearance());
    EXPECT_EQ(windowColour(), lightWindow) << "System re-applies on the change";

    settings->setAppearanceMode(AppearanceMode::dark);
    settings->applyAppearance(application);
    portal.setScheme(0); // no preference: not dark
    ASSERT_TRUE(notices.wait(5000));
    EXPECT_EQ(windowColour(), darkWindow) << "an explicit mode ignores the desktop";
    settings->setAppearanceMode(AppearanceMode::system);
    EXPECT_FALSE(settings->isDarkAppearance());

    // A desktop theme whose palette is already dark keeps its own colours.
    settings.reset();
    setWindowColour(QColor(20, 20, 40));
    AppSettings themed(home.settingsFile(), std::make_unique<SystemColorScheme>(portal.busAddress));
    QSignalSpy desktop(&themed, &AppSettings::objectWillChange);
    portal.setScheme(1);
    ASSERT_TRUE(desktop.wait(5000));
    themed.applyAppearance(application);
    EXPECT_EQ(windowColour(), QColor(20, 20, 40));
}

} // namespace
