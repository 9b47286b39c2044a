#include "SettingsWindowTestSupport.h"

#include "settings/HexColor.h"
#include "settings/ThemeColors.h"
#include "views/settings/AboutView.h"
#include "views/settings/AppearanceSettingsView.h"
#include "views/settings/ColorWell.h"
#include "views/settings/GeneralSettingsView.h"
#include "views/settings/MonitorsSettingsView.h"
#include "views/settings/SettingsView.h"
#include "views/settings/ThemePresetButton.h"

#include <QColorDialog>
#include <QComboBox>
#include <QDesktopServices>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QSlider>
#include <QUrl>

#include <vector>

namespace {

class SettingsControls : public SettingsWindowTest {
protected:
    void SetUp() override {
        SettingsWindowTest::SetUp();
        view = std::make_unique<SettingsView>(
            *settings, [this] { ++syncs; },
            LaunchAtLogin(configDir(), QCoreApplication::applicationFilePath()));
    }

    QWidget& page(int index) { return *view->widget(index); }

    int syncs = 0;
    std::unique_ptr<SettingsView> view;
};

QStringList labelTexts(const QWidget& root) {
    QStringList texts;
    for (const QLabel* label : root.findChildren<QLabel*>())
        if (!label->text().isEmpty())
            texts << label->text();
    return texts;
}

QStringList itemTexts(const QComboBox& picker) {
    QStringList texts;
    for (int i = 0; i < picker.count(); ++i)
        texts << picker.itemText(i);
    return texts;
}

struct ToggleCase {
    const char* key;
    bool (AppSettings::*get)() const;
    bool syncsItems;
};

const std::vector<ToggleCase> toggles{
    {"showCPU", &AppSettings::showCPU, false},
    {"showMemory", &AppSettings::showMemory, false},
    {"showDisk", &AppSettings::showDisk, false},
    {"showNetwork", &AppSettings::showNetwork, false},
    {"showTemperature", &AppSettings::showTemperature, false},
    {"showFan", &AppSettings::showFan, false},
    {"persistShowIcons", &AppSettings::persistShowIcons, false},
    {"persistCPU", &AppSettings::persistCPU, true},
    {"persistMemory", &AppSettings::persistMemory, true},
    {"persistDisk", &AppSettings::persistDisk, true},
    {"networkCombined", &AppSettings::networkCombined, true},
    {"persistNetwork", &AppSettings::persistNetwork, true},
    {"persistNetworkIn", &AppSettings::persistNetworkIn, true},
    {"persistNetworkOut", &AppSettings::persistNetworkOut, true},
    {"persistCPUTemp", &AppSettings::persistCPUTemp, true},
    {"persistGPUTemp", &AppSettings::persistGPUTemp, true},
    {"persistFan", &AppSettings::persistFan, true},
};

TEST_F(SettingsControls, EveryToggleWritesItsBooleanKeyAndItemSwitchesResyncTheTray) {
    for (const ToggleCase& toggle : toggles) {
        SCOPED_TRACE(toggle.key);
        auto* button = child<QAbstractButton>(*view, QString::fromLatin1(toggle.key));
        ASSERT_NE(button, nullptr);
        const bool initial = ((*settings).*toggle.get)();
        EXPECT_EQ(button->isChecked(), initial);
        const int syncsBefore = syncs;

        button->click();
        EXPECT_EQ(stored(toggle.key), initial ? "false" : "true");
        EXPECT_EQ(((*settings).*toggle.get)(), !initial);
        button->click();
        EXPECT_EQ(stored(toggle.key), initial ? "true" : "false");

        EXPECT_EQ(syncs - syncsBefore, toggle.syncsItems ? 2 : 0);
    }
}

TEST_F(SettingsControls, TogglesFollowChangesMadeElsewhere) {
    auto* showFan = child<QAbstractButton>(*view, QStringLiteral("showFan"));
    ASSERT_NE(showFan, nullptr);
    settings->setShowFan(false);
    EXPECT_FALSE(showFan->isChecked());
    settings->setShowFan(true);
    EXPECT_TRUE(showFan->isChecked());
    EXPECT_EQ(syncs, 0);
}

struct PickerCase {
    const char* key;
    QStringList labels;
    QStringList storedTexts;
};

TEST_F(SettingsControls, EveryPickerOffersItsChoicesAndStoresTheChosenValue) {
    const std::vector<PickerCase> pickers{
        {"updateInterval",
         {"1 second", "2 seconds", "5 seconds", "10 seconds"},
         {"1", "2", "5", "10"}},
        {"displayMode",
         {"Graph Only", "Text Only", "Graph & Text"},
         {"Graph Only", "Text Only", "Graph & Text"}},
        {"appearanceMode", {"System", "Light", "Dark"}, {"System", "Light", "Dark"}},
        {"persistentDisplayStyle",
         {"Graph Only", "Text Only", "Graph & Text"},
         {"Graph Only", "Text Only", "Graph & Text"}},
    };
    for (const PickerCase& picker : pickers) {
        SCOPED_TRACE(picker.key);
        auto* combo = child<QComboBox>(*view, QString::fromLatin1(picker.key));
        ASSERT_NE(combo, nullptr);
        EXPECT_EQ(itemTexts(*combo), picker.labels);
        // Every choice once, starting after the current one, so each is a change.
        const int current = combo->currentIndex();
        for (int step = 1; step <= combo->count(); ++step) {
            const int index = (current + step) % combo->count();
            combo->setCurrentIndex(index);
            EXPECT_EQ(stored(picker.key), picker.storedTexts[index]);
        }
    }
    child<QComboBox>(*view, QStringLiteral("updateInterval"))->setCurrentIndex(3);
    EXPECT_EQ(settings->updateInterval(), 10.0);
    child<QComboBox>(*view, QStringLiteral("displayMode"))->setCurrentIndex(1);
    EXPECT_EQ(settings->displayMode(), DisplayMode::textOnly);
    child<QComboBox>(*view, QStringLiteral("persistentDisplayStyle"))->setCurrentIndex(0);
    EXPECT_EQ(settings->persistentDisplayStyle(), PersistentStyle::graphOnly);
    EXPECT_EQ(syncs, 0);
}

TEST_F(SettingsControls, IntervalPickerShowsStoredChoiceAndNothingForOtherValues) {
    auto* picker = child<QComboBox>(*view, QStringLiteral("updateInterval"));
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(picker->currentText(), "2 seconds");
    settings->setUpdateInterval(10.0);
    EXPECT_EQ(picker->currentText(), "10 seconds");
    settings->setUpdateInterval(3.0);
    EXPECT_EQ(picker->currentIndex(), -1);
    EXPECT_EQ(settings->updateInterval(), 3.0);
}

const std::vector<std::pair<const char*, const char*>> itemStyles{
    {"persistCPU", "styleCPU"},
    {"persistMemory", "styleMemory"},
    {"persistDisk", "styleDisk"},
    {"persistNetwork", "styleNetwork"},
    {"persistNetworkIn", "styleNetworkIn"},
    {"persistNetworkOut", "styleNetworkOut"},
    {"persistCPUTemp", "styleCPUTemp"},
    {"persistGPUTemp", "styleGPUTemp"},
    {"persistFan", "styleFan"},
};

TEST_F(SettingsControls, StylePickersStoreTheLabelAndDefaultAsTheEmptyString) {
    for (const auto& [persistKey, styleKey] : itemStyles) {
        SCOPED_TRACE(styleKey);
        auto* picker = child<QComboBox>(*view, QString::fromLatin1(styleKey));
        ASSERT_NE(picker, nullptr);
        EXPECT_EQ(picker->width(), 130);
        EXPECT_EQ(itemTexts(*picker),
                  QStringList({"Default", "Graph Only", "Text Only", "Graph & Text"}));
        EXPECT_EQ(picker->currentText(), "Default");

        picker->setCurrentIndex(2);
        EXPECT_EQ(stored(styleKey), "Text Only");
        picker->setCurrentIndex(0);
        EXPECT_EQ(stored(styleKey), QString(""));
        picker->setCurrentIndex(1);
        EXPECT_EQ(stored(styleKey), "Graph Only");
    }
    EXPECT_EQ(settings->effectiveStyle("fan"), PersistentStyle::graphOnly);
}

TEST_F(SettingsControls, StylePickerIsFadedWhileItsItemIsOff) {
    for (const auto& [persistKey, styleKey] : itemStyles) {
        SCOPED_TRACE(styleKey);
        auto* picker = child<QComboBox>(*view, QString::fromLatin1(styleKey));
        auto* toggle = child<QAbstractButton>(*view, QString::fromLatin1(persistKey));
        ASSERT_TRUE(picker && toggle);
        auto* fade = qobject_cast<QGraphicsOpacityEffect*>(picker->graphicsEffect());
        ASSERT_NE(fade, nullptr);
        EXPECT_DOUBLE_EQ(fade->opacity(), 0.3);
        toggle->click();
        EXPECT_DOUBLE_EQ(fade->opacity(), 1.0);
        toggle->click();
        EXPECT_DOUBLE_EQ(fade->opacity(), 0.3);
    }
}

TEST_F(SettingsControls, CombinedNetworkShowsOneRowAndKeepsTheHiddenRowsValues) {
    settings->setPersistNetworkIn(true);
    settings->setStyleNetworkIn(QStringLiteral("Graph Only"));
    settings->setStyleNetworkOut(QStringLiteral("Text Only"));
    QWidget& monitors = page(1);
    const auto rowShown = [&](const char* key) {
        return child<QWidget>(monitors, QString::fromLatin1(key))->isVisibleTo(&monitors);
    };
    EXPECT_FALSE(rowShown("persistNetwork"));
    EXPECT_TRUE(rowShown("persistNetworkIn"));
    EXPECT_TRUE(rowShown("persistNetworkOut"));

    child<QAbstractButton>(monitors, QStringLiteral("networkCombined"))->click();
    EXPECT_TRUE(rowShown("persistNetwork"));
    EXPECT_TRUE(rowShown("styleNetwork"));
    EXPECT_FALSE(rowShown("persistNetworkIn"));
    EXPECT_FALSE(rowShown("styleNetworkIn"));
    EXPECT_FALSE(rowShown("persistNetworkOut"));
    EXPECT_EQ(stored("persistNetworkIn"), "true");
    EXPECT_EQ(stored("styleNetworkIn"), "Graph Only");
    EXPECT_EQ(stored("styleNetworkOut"), "Text Only");

    child<QAbstractButton>(monitors, QStringLiteral("networkCombined"))->click();
    EXPECT_FALSE(rowShown("persistNetwork"));
    EXPECT_TRUE(rowShown("persistNetworkIn"));
    EXPECT_TRUE(child<QAbstractButton>(monitors, QStringLiteral("persistNetworkIn"))->isChecked());
    EXPECT_EQ(child<QComboBox>(monitors, QStringLiteral("styleNetworkOut"))->currentText(),
              "Text Only");
}

TEST_F(SettingsControls, TabsAreInOrderWithTheirSymbolsAndTexts) {
    ASSERT_EQ(view->count(), 4);
    const QStringList titles{"General", "Monitors", "Appearance", "About"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(view->tabText(i), titles[i]);
        EXPECT_FALSE(view->tabIcon(i).isNull()) << titles[i].toStdString();
    }
    EXPECT_NE(qobject_cast<GeneralSettingsView*>(view->widget(0)), nullptr);
    EXPECT_NE(qobject_cast<MonitorsSettingsView*>(view->widget(1)), nullptr);
    EXPECT_NE(qobject_cast<AppearanceSettingsView*>(view->widget(2)), nullptr);
    EXPECT_NE(qobject_cast<AboutView*>(view->widget(3)), nullptr);

    EXPECT_EQ(
        labelTexts(page(0)),
        QStringList({"Update Interval", "Refresh every", "Display Mode", "Menu bar style",
                     "Appearance", "Mode", "Always use light appearance for all Vorlune windows.",
                     "Startup", "Launch at login"}));
    EXPECT_EQ(
        labelTexts(page(1)),
        QStringList({"Popover Sections",
                     "CPU Usage",
                     "Memory Usage",
                     "Disk Usage",
                     "Network Throughput",
                     "Temperature",
                     "Fan Speed",
                     "Persistent Menu Bar Items",
                     "Default Style",
                     "Show Icons",
                     "CPU %",
                     "Memory %",
                     "Disk %",
                     "Combine Network Upload/Download",
                     "Network",
                     "Network ↓",
                     "Network ↑",
                     "CPU Temp",
                     "GPU Temp",
                     "Fan Speed",
                     "Each enabled sensor gets its own menu bar item. Click to see details.",
                     "Temperature and fan readings use the SMC helper for accurate sensor data."}));
    EXPECT_EQ(labelTexts(page(2)),
              QStringList({"Theme Presets", "Custom Colors", "CPU", "Memory", "Disk", "Network",
                           "Temperature", "Fan", "Graph Size", "Width", "40", "Height", "18"}));
    const QStringList about = labelTexts(page(3));
    EXPECT_TRUE(about.contains("Vorlune"));
    EXPECT_TRUE(about.contains("Version 1.0"));
    EXPECT_TRUE(about.contains("Made by"));
    const auto* tagline = child<QLabel>(page(3), QStringLiteral("tagline"));
    ASSERT_NE(tagline, nullptr);
    EXPECT_EQ(tagline->text().count('\n'), 1);
}

TEST_F(SettingsControls, AppearanceModeExplainsItselfAndAppliesToTheApplication) {
    auto* picker = child<QComboBox>(*view, QStringLiteral("appearanceMode"));
    auto* explanation = child<QLabel>(*view, QStringLiteral("appearanceExplanation"));
    ASSERT_TRUE(picker && explanation);
    const auto windowLightness = [] {
        return QGuiApplication::palette().color(QPalette::Window).lightnessF();
    };

    picker->setCurrentIndex(2);
    EXPECT_EQ(explanation->text(), "Always use dark appearance for all Vorlune windows.");
    EXPECT_LT(windowLightness(), 0.5);
    picker->setCurrentIndex(1);
    EXPECT_EQ(explanation->text(), "Always use light appearance for all Vorlune windows.");
    EXPECT_GT(windowLightness(), 0.5);
    picker->setCurrentIndex(0);
    EXPECT_EQ(explanation->text(), "Follows your desktop's appearance setting, including "
                                   "auto-switch by time of day.");
    EXPECT_EQ(stored("appearanceMode"), "System");
}

TEST_F(SettingsControls, ThemeButtonsApplyTheirPresetAndMarkIt) {
    const QList<ThemePresetButton*> buttons = page(2).findChildren<ThemePresetButton*>();
    ASSERT_EQ(buttons.size(), 8);
    const char* colourKeys[] = {"cpuColorHex",     "memoryColorHex",      "diskColorHex",
                                "networkColorHex", "temperatureColorHex", "fanColorHex"};
    for (std::size_t i = 0; i < 8; ++i) {
        ThemePresetButton* button = buttons[qsizetype(i)];
        const ThemePreset preset = allCases<ThemePreset>()[i];
        ASSERT_EQ(button->preset(), preset);
        SCOPED_TRACE(button->text().toStdString());
        EXPECT_EQ(button->text().toStdString(), rawValue(preset));

        button->click();
        EXPECT_EQ(stored("themePreset").value_or("").toStdString(), rawValue(preset));
        const auto expected = themeColorHexes(preset, false);
        for (std::size_t c = 0; c < 6; ++c) {
            EXPECT_EQ(stored(colourKeys[c]).value_or("").toStdString(), expected[c]);
            auto* well = child<ColorWell>(page(2), QString::fromLatin1(colourKeys[c]));
            EXPECT_EQ(well->color(), toQColor(colorFromHex(QString::fromUtf8(
                                         expected[c].data(), qsizetype(expected[c].size())))));
        }
        for (const ThemePresetButton* other : buttons)
            EXPECT_EQ(other->isSelected(), other == button);
    }
    // The crossed pair: the third button is "Mono Dark" and paints black.
    buttons[2]->click();
    EXPECT_EQ(stored("themePreset"), "Mono Dark");
    EXPECT_EQ(stored("cpuColorHex"), "000000");
}

TEST_F(SettingsControls, ThemePreviewsDrawTheirFixedGradients) {
    const QList<ThemePresetButton*> buttons = page(2).findChildren<ThemePresetButton*>();
    ASSERT_EQ(buttons.size(), 8);
    settings->setCpuColorHex(QStringLiteral("123456"));
    struct Edge {
        ThemePreset preset;
        QRgb leading;
        QRgb trailing;
    };
    const Edge edges[] = {
        {ThemePreset::colorful, 0x007AFF, 0xAF52DE}, {ThemePreset::monoLight, 0x000000, 0x000000},
        {ThemePreset::monoDark, 0xFFFFFF, 0xFFFFFF}, {ThemePreset::pastel, 0xA2D2FF, 0xFFD6A5},
        {ThemePreset::neon, 0x00F0FF, 0xFF00FF},     {ThemePreset::ocean, 0x0077B6, 0xCAF0F8},
        {ThemePreset::midnight, 0x6C63FF, 0xC44569},
    };
    for (const Edge& edge : edges) {
        ThemePresetButton* button = buttons[int(edge.preset)];
        SCOPED_TRACE(button->text().toStdString());
        button->resize(90, button->sizeHint().height());
        const QImage image = button->grab().toImage();
        const int y = 2 + 13;
        const auto near = [](QRgb actual, QRgb expected) {
            return std::abs(qRed(actual) - qRed(expected)) <= 12 &&
                   std::abs(qGreen(actual) - qGreen(expected)) <= 12 &&
                   std::abs(qBlue(actual) - qBlue(expected)) <= 12;
        };
        const QRgb leading = image.pixel(3, y);
        const QRgb trailing = image.pixel(image.width() - 4, y);
        EXPECT_TRUE(near(leading, edge.leading)) << std::hex << leading;
        EXPECT_TRUE(near(trailing, edge.trailing)) << std::hex << trailing;
    }
}

TEST_F(SettingsControls, ColourWellsWriteTheChosenColourAsHexWithoutAlpha) {
    const char* keys[] = {"cpuColorHex",     "memoryColorHex",      "diskColorHex",
                          "networkColorHex", "temperatureColorHex", "fanColorHex"};
    int shade = 0x10;
    for (const char* key : keys) {
        SCOPED_TRACE(key);
        auto* well = child<ColorWell>(*view, QString::fromLatin1(key));
        ASSERT_NE(well, nullptr);
        EXPECT_EQ(well->color(), toQColor(colorFromHex(settings->property(key).toString())));

        well->click();
        auto* dialog = well->findChild<QColorDialog*>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(dialog->testOption(QColorDialog::ShowAlphaChannel));
        const QColor chosen(shade, 0xAB, 0x0C);
        dialog->setCurrentColor(chosen);
        dialog->accept();
        const QString expected = QStringLiteral("%1AB0C").arg(shade, 2, 16, QChar(u'0')).toUpper();
        EXPECT_EQ(stored(key), expected);
        EXPECT_EQ(well->color(), chosen);
        shade += 0x21;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(well->findChild<QColorDialog*>(), nullptr);
    }
    // A stored colour that is not six digits shows as white.
    settings->setFanColorHex(QStringLiteral("fff"));
    EXPECT_EQ(child<ColorWell>(*view, QStringLiteral("fanColorHex"))->color(), QColor(Qt::white));
}

TEST_F(SettingsControls, GraphSlidersMoveInStepsAndShowWholeNumbers) {
    struct SliderCase {
        const char* key;
        double minimum;
        double step;
        int positions;
    };
    for (const SliderCase& slider :
         {SliderCase{"graphWidth", 20, 5, 13}, SliderCase{"graphHeight", 12, 2, 7}}) {
        SCOPED_TRACE(slider.key);
        auto* control = child<QSlider>(*view, QString::fromLatin1(slider.key));
        auto* value = child<QLabel>(*view, QString::fromLatin1(slider.key) + "Value");
        ASSERT_TRUE(control && value);
        EXPECT_EQ(value->width(), 40);
        EXPECT_EQ(control->maximum() - control->minimum() + 1, slider.positions);
        for (int position = control->maximum(); position >= control->minimum(); --position) {
            control->setValue(position);
            const double expected = slider.minimum + position * slider.step;
            EXPECT_EQ(stored(slider.key), QString::number(expected));
            EXPECT_EQ(value->text(), QString::number(expected));
        }
    }
    auto* width = child<QSlider>(*view, QStringLiteral("graphWidth"));
    settings->setGraphWidth(42.7);
    EXPECT_EQ(child<QLabel>(*view, QStringLiteral("graphWidthValue"))->text(), "42");
    EXPECT_EQ(width->value(), 5);
    EXPECT_EQ(settings->graphWidth(), 42.7);
    settings->setGraphWidth(1e300);
    EXPECT_EQ(width->value(), width->maximum());
}

class UrlCatcher : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

TEST_F(SettingsControls, MakerLinkOpensTheMakersSite) {
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
    auto* link = child<QAbstractButton>(page(3), QStringLiteral("makerLink"));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->text(), "Orrindale");
    link->click();
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    ASSERT_EQ(catcher.opened.size(), 1);
    EXPECT_EQ(catcher.opened.front(), QUrl(QStringLiteral("https://orrindale.com")));
}

} // namespace

#include "SettingsControlsTest.moc"
