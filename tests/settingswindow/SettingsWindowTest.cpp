// The settings window on a real settings file: its four tabs in light and dark, saved
// under screenshots/settings/ in the build tree, and what its controls store.
#include "support/SettingsHome.h"
#include "support/WindowCheck.h"

#include "views/settings/ColorWell.h"
#include "views/settings/SettingsView.h"
#include "views/settings/SettingsWindowController.h"

#include <QColorDialog>
#include <QComboBox>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QSlider>

namespace {

struct SettingsWindow : testing::Test {
    // The General tab applies the appearance to the whole application.
    ~SettingsWindow() override { QGuiApplication::setPalette(QPalette()); }

    std::unique_ptr<SettingsWindowController> show(AppSettings& store) {
        auto controller = std::make_unique<SettingsWindowController>(
            store, [this] { ++syncs; }, LaunchAtLogin(home.configDir(), "/usr/bin/vorlune"));
        controller->showSettings();
        return controller;
    }

    SettingsHome home;
    int syncs = 0;
};

TEST_F(SettingsWindow, EveryTabInLightAndDark) {
    const auto settings = home.open();
    const auto controller = show(*settings);
    QWidget* window = controller->window();
    controller->showSettings();
    EXPECT_EQ(controller->window(), window) << "one window at a time";
    auto* tabs = window->findChild<SettingsView*>();
    const char* names[] = {"general", "monitors", "appearance", "about"};
    for (const bool dark : {false, true}) {
        // The open window follows a new mode at once.
        settings->setAppearanceMode(dark ? AppearanceMode::dark : AppearanceMode::light);
        for (int tab = 0; tab < 4; ++tab) {
            SCOPED_TRACE(names[tab] + std::string(dark ? " dark" : " light"));
            tabs->setCurrentIndex(tab);
            QCoreApplication::processEvents();
            const QString name = QStringLiteral("settings/%1-%2").arg(names[tab]);
            const QImage image = checkScreenshot(*window, name.arg(dark ? "dark" : "light"), dark);
            EXPECT_EQ(image.width(), 450 * image.devicePixelRatio());
            // Every control of the tab in view, none scrolled away.
            if (const auto* page = qobject_cast<QScrollArea*>(tabs->currentWidget())) {
                EXPECT_EQ(page->verticalScrollBar()->maximum(), 0);
            }
        }
    }
}

// Works a control of any kind once, the same way each time, and says what it shows.
QString operate(QWidget* control, bool change) {
    auto* picker = qobject_cast<QComboBox*>(control);
    auto* slider = qobject_cast<QSlider*>(control);
    auto* button = qobject_cast<QAbstractButton*>(control);
    if (auto* well = qobject_cast<ColorWell*>(control); well && change) {
        well->click();
        well->findChild<QColorDialog*>()->setCurrentColor(QColor(0x10, 0xAB, 0x0C));
        well->findChild<QColorDialog*>()->accept();
    } else if (change && picker) {
        picker->setCurrentIndex(picker->count() - 1);
    } else if (change && slider) {
        slider->setValue(slider->maximum());
    } else if (change) {
        button->click();
    }
    if (auto* well = qobject_cast<ColorWell*>(control))
        return well->color().name();
    return picker                ? picker->currentText()
           : slider              ? QString::number(slider->value())
           : button->isChecked() ? "on"
                                 : "off";
}

TEST_F(SettingsWindow, EachKindOfControlStoresItsSettingAndShowsItAfterReopening) {
    struct Case {
        const char* key; // also the control's name
        const char* stored;
        const char* shown;
        int syncs; // item switches rebuild the tray items
    } const cases[] = {
        {"showFan", "false", "off", 0},
        {"persistCPU", "true", "on", 1},
        {"updateInterval", "10", "10 seconds", 0},
        {"styleFan", "Graph & Text", "Graph & Text", 0},
        {"graphHeight", "24", "6", 0},
        {"cpuColorHex", "10AB0C", "#10ab0c", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        SettingsHome fresh;
        syncs = 0;
        {
            const auto store = fresh.open();
            const auto controller = show(*store);
            QPointer<QWidget> window = controller->window();
            operate(window->findChild<QWidget*>(c.key), true);
            EXPECT_EQ(syncs, c.syncs);
            window->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_TRUE(window.isNull()) << "closing drops the window";
        }
        const QSettings file(fresh.settingsFile(), QSettings::NativeFormat);
        EXPECT_EQ(file.value(c.key).toString(), c.stored);
        const auto reread = fresh.open();
        EXPECT_EQ(operate(show(*reread)->window()->findChild<QWidget*>(c.key), false), c.shown);
    }
}

} // namespace
