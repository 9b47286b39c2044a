#include "SettingsPropertyText.h"
#include "SettingsTestSupport.h"

#include "settings/AppSettings.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <array>
#include <gtest/gtest.h>
#include <span>

namespace {

class SettingsLookups : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        settings = std::make_unique<AppSettings>(dir.filePath(QStringLiteral("vorlune.conf")),
                                                 std::make_unique<SystemColorScheme>(QString()));
    }
    void TearDown() override { QGuiApplication::setPalette(QPalette()); }

    QTemporaryDir dir;
    std::unique_ptr<AppSettings> settings;
};

const std::pair<const char*, const char*> itemStyleKeys[] = {{"cpu", "styleCPU"},
                                                             {"memory", "styleMemory"},
                                                             {"disk", "styleDisk"},
                                                             {"networkIn", "styleNetworkIn"},
                                                             {"networkOut", "styleNetworkOut"},
                                                             {"network", "styleNetwork"},
                                                             {"cpuTemp", "styleCPUTemp"},
                                                             {"gpuTemp", "styleGPUTemp"},
                                                             {"fan", "styleFan"}};

TEST_F(SettingsLookups, EachItemKeyUsesItsOwnStyleAndNoOther) {
    settings->setPersistentDisplayStyle(PersistentStyle::textOnly);
    for (const auto& [sensorKey, styleSetting] : itemStyleKeys) {
        for (const auto& [otherKey, otherSetting] : itemStyleKeys)
            ASSERT_TRUE(settings_text::write(*settings, otherSetting, ""));
        ASSERT_TRUE(settings_text::write(*settings, styleSetting, "Graph Only"));
        for (const auto& [otherKey, otherSetting] : itemStyleKeys)
            EXPECT_EQ(settings->effectiveStyle(otherKey), otherKey == std::string_view(sensorKey)
                                                              ? PersistentStyle::graphOnly
                                                              : PersistentStyle::textOnly)
                << styleSetting << " set, asking " << otherKey;
    }
}

TEST_F(SettingsLookups, OwnStyleMustBeAnExactRawValueElseGlobalStyle) {
    const std::pair<const char*, PersistentStyle> cases[] = {
        {"Graph Only", PersistentStyle::graphOnly},      {"Text Only", PersistentStyle::textOnly},
        {"Graph & Text", PersistentStyle::graphAndText}, {"", PersistentStyle::textOnly},
        {"graph only", PersistentStyle::textOnly},       {"Graph Only ", PersistentStyle::textOnly},
        {"Graph&Text", PersistentStyle::textOnly},       {"textOnly", PersistentStyle::textOnly},
    };
    settings->setPersistentDisplayStyle(PersistentStyle::textOnly);
    for (const auto& [stored, expected] : cases) {
        settings->setStyleFan(QString::fromUtf8(stored));
        EXPECT_EQ(settings->effectiveStyle("fan"), expected) << '"' << stored << '"';
    }
}

TEST_F(SettingsLookups, UnknownItemKeyGetsTheGlobalStyle) {
    for (const auto& [sensorKey, styleSetting] : itemStyleKeys)
        ASSERT_TRUE(settings_text::write(*settings, styleSetting, "Text Only"));
    for (PersistentStyle global : allCases<PersistentStyle>()) {
        settings->setPersistentDisplayStyle(global);
        for (const char* unknown : {"temperature", "", "CPU", "fan ", "styleFan", "gpu"})
            EXPECT_EQ(settings->effectiveStyle(unknown), global) << '"' << unknown << '"';
    }
}

TEST_F(SettingsLookups, DarkAppearanceForEachModeWithoutAPortal) {
    settings->setAppearanceMode(AppearanceMode::light);
    EXPECT_FALSE(settings->isDarkAppearance());
    settings->setAppearanceMode(AppearanceMode::dark);
    EXPECT_TRUE(settings->isDarkAppearance());

    settings->setAppearanceMode(AppearanceMode::system);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(127, 127, 127)); // lightness just below half
    QGuiApplication::setPalette(palette);
    EXPECT_TRUE(settings->isDarkAppearance());
    palette.setColor(QPalette::Window, QColor(128, 128, 128));
    QGuiApplication::setPalette(palette);
    EXPECT_FALSE(settings->isDarkAppearance());
}

using Colours = std::array<const char*, 6>;

struct ThemeCase {
    ThemePreset preset;
    AppearanceMode appearance;
    const char* stored;
    Colours colours;
};

constexpr Colours black{"000000", "000000", "000000", "000000", "000000", "000000"};
constexpr Colours white{"FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF", "FFFFFF"};
constexpr Colours colorful{"007AFF", "34C759", "FF9500", "AF52DE", "FF3B30", "5AC8FA"};
constexpr Colours pastel{"A2D2FF", "CAFFBF", "FFD6A5", "BDB2FF", "FFADAD", "FDFFB6"};
constexpr Colours neon{"00F0FF", "39FF14", "FF6600", "FF00FF", "FF073A", "FFFF00"};
constexpr Colours ocean{"0077B6", "00B4D8", "48CAE4", "90E0EF", "023E8A", "CAF0F8"};
constexpr Colours midnight{"6C63FF", "4ECDC4", "FFE66D", "FF6B6B", "C44569", "574B90"};

const ThemeCase themeCases[] = {
    {ThemePreset::colorful, AppearanceMode::light, "Colorful", colorful},
    {ThemePreset::colorful, AppearanceMode::dark, "Colorful", colorful},
    {ThemePreset::mono, AppearanceMode::light, "Mono", black},
    {ThemePreset::mono, AppearanceMode::dark, "Mono", white},
    {ThemePreset::monoLight, AppearanceMode::light, "Mono Dark", black},
    {ThemePreset::monoLight, AppearanceMode::dark, "Mono Dark", black},
    {ThemePreset::monoDark, AppearanceMode::light, "Mono Light", white},
    {ThemePreset::monoDark, AppearanceMode::dark, "Mono Light", white},
    {ThemePreset::pastel, AppearanceMode::light, "Pastel", pastel},
    {ThemePreset::pastel, AppearanceMode::dark, "Pastel", pastel},
    {ThemePreset::neon, AppearanceMode::dark, "Neon", neon},
    {ThemePreset::ocean, AppearanceMode::light, "Ocean", ocean},
    {ThemePreset::midnight, AppearanceMode::dark, "Midnight", midnight},
};

const char* const themeFields[] = {"themePreset",  "cpuColorHex",     "memoryColorHex",
                                   "diskColorHex", "networkColorHex", "temperatureColorHex",
                                   "fanColorHex"};

std::vector<std::string> themeSnapshot(const AppSettings& settings) {
    std::vector<std::string> fields;
    for (const char* field : themeFields)
        fields.push_back(settings_text::read(settings, field));
    return fields;
}

TEST_F(SettingsLookups, ApplyThemeWritesPresetThenSixColoursInOrderThenOneMoreNotice) {
    for (const ThemeCase& c : themeCases) {
        const std::string label =
            std::string(c.stored) + " under " + std::string(rawValue(c.appearance));
        // Start from values the preset differs from in every field.
        settings->setAppearanceMode(c.appearance);
        settings->setThemePreset(c.preset == ThemePreset::ocean ? ThemePreset::neon
                                                                : ThemePreset::ocean);
        for (const char* field : std::span(themeFields).subspan(1))
            ASSERT_TRUE(settings_text::write(*settings, field, "123456"));

        std::vector<std::vector<std::string>> seen;
        const auto connection = QObject::connect(settings.get(), &AppSettings::objectWillChange,
                                                 [&] { seen.push_back(themeSnapshot(*settings)); });
        settings->applyTheme(c.preset);
        QObject::disconnect(connection);

        std::vector<std::string> expected{c.stored};
        expected.insert(expected.end(), c.colours.begin(), c.colours.end());
        ASSERT_EQ(seen.size(), 8u) << label;
        for (std::size_t notice = 0; notice < 7; ++notice)
            for (std::size_t field = 0; field < 7; ++field)
                EXPECT_EQ(seen[notice][field], field <= notice ? expected[field] : "123456")
                    << label << ", notice " << notice + 1 << ", " << themeFields[field];
        EXPECT_EQ(seen[7], expected) << label << ": the extra notice sees the full set";
        EXPECT_EQ(settings->themePreset(), c.preset) << label;
    }
}

TEST_F(SettingsLookups, ThirdThemeIsStoredAsMonoDark) {
    settings->applyTheme(allCases<ThemePreset>()[2]);
    EXPECT_TRUE(readTextFile(settings->fileName()).contains("themePreset=Mono Dark"));
}

TEST_F(SettingsLookups, MonoUnderSystemFollowsTheApplicationPaletteOnceWhenApplied) {
    settings->setAppearanceMode(AppearanceMode::system);
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(30, 30, 30));
    QGuiApplication::setPalette(dark);
    settings->applyTheme(ThemePreset::mono);
    EXPECT_EQ(settings->cpuColorHex(), "FFFFFF");

    // A later switch to light does not recolour it.
    QGuiApplication::setPalette(QPalette());
    EXPECT_EQ(settings->fanColorHex(), "FFFFFF");
    settings->applyTheme(ThemePreset::mono);
    EXPECT_EQ(settings->fanColorHex(), "000000");
}

} // namespace
