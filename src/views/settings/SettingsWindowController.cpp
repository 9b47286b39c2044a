#include "SettingsWindowController.h"

#include "SettingsView.h"
#include "settings/AppSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>

SettingsWindowController::SettingsWindowController(AppSettings& settings,
                                                   std::function<void()> syncStatusItems,
                                                   LaunchAtLogin launchAtLogin, QObject* parent)
    : QObject(parent), settings(settings), syncStatusItems(std::move(syncStatusItems)),
      launchAtLogin(std::move(launchAtLogin)) {}

SettingsWindowController::~SettingsWindowController() {
    delete settingsWindow.data();
}

void SettingsWindowController::showSettings() {
    if (settingsWindow && settingsWindow->isVisible()) {
        applyAppearance(*settingsWindow);
        settingsWindow->raise();
        settingsWindow->activateWindow();
        return;
    }
    // A closed window is never reopened.
    if (settingsWindow)
        settingsWindow->deleteLater();
    settingsWindow = buildWindow();
    applyAppearance(*settingsWindow);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        settingsWindow->setGeometry(QStyle::alignedRect(
            Qt::LeftToRight, Qt::AlignCenter, settingsWindow->size(), screen->availableGeometry()));
    settingsWindow->show();
    settingsWindow->raise();
    settingsWindow->activateWindow();
}

QWidget* SettingsWindowController::buildWindow() {
    // Titled and closable only: no minimise or maximise button, and a fixed size.
    auto* window = new QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                            Qt::WindowCloseButtonHint);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QStringLiteral("Vorlune Settings"));
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* view = new SettingsView(settings, syncStatusItems, launchAtLogin, helperActions, window);
    layout->addWidget(view);
    // Every control of the tallest tab in view, on a screen that has the room (a
    // 768-pixel one does); a smaller screen scrolls the tab.
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int room = screen ? screen->availableGeometry().height() - 40 : windowHeight;
    window->setFixedSize(windowWidth, std::clamp(view->sizeHint().height(), windowHeight,
                                                 std::max(room, windowHeight)));

    // The appearance picker lives in this window, so a new mode shows here at once.
    connect(&settings, &AppSettings::objectWillChange, window, [this, window] {
        if (settings.appearanceMode() != appliedMode)
            applyAppearance(*window);
    });
    return window;
}

void SettingsWindowController::applyAppearance(QWidget& window) {
    appliedMode = settings.appearanceMode();
    settings.applyAppearance(window);
}
