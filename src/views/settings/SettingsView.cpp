#include "SettingsView.h"

#include "AboutView.h"
#include "AppearanceSettingsView.h"
#include "GeneralSettingsView.h"
#include "MonitorsSettingsView.h"
#include "tray/Symbols.h"

#include <QEvent>
#include <QScrollArea>
#include <QTabBar>

#include <algorithm>
#include <array>

namespace {
constexpr std::array<const char*, 4> tabSymbols{"gear", "gauge.with.dots.needle.33percent",
                                                "paintbrush", "info.circle"};
} // namespace

SettingsView::SettingsView(AppSettings& settings, std::function<void()> syncStatusItems,
                           LaunchAtLogin launchAtLogin, SensorHelperActions helperActions,
                           QWidget* parent)
    : QTabWidget(parent) {
    setDocumentMode(true);
    setIconSize(QSize(16, 16));
    setAccessibleName(QStringLiteral("Settings"));
    tabBar()->setAccessibleName(QStringLiteral("Settings pages"));
    addTab(new GeneralSettingsView(settings, std::move(launchAtLogin), std::move(helperActions)),
           QStringLiteral("General"));
    addTab(new MonitorsSettingsView(settings, std::move(syncStatusItems)),
           QStringLiteral("Monitors"));
    addTab(new AppearanceSettingsView(settings), QStringLiteral("Appearance"));
    addTab(new AboutView, QStringLiteral("About"));
    tintTabIcons();
}

QSize SettingsView::sizeHint() const {
    // Tall enough for the tallest tab without scrolling; the window caps it at the screen.
    int tallest = 500;
    for (int i = 0; i < count(); ++i) {
        if (const auto* page = qobject_cast<const QScrollArea*>(widget(i)); page && page->widget())
            tallest = std::max(tallest, page->widget()->sizeHint().height() +
                                            tabBar()->sizeHint().height() + 4);
    }
    return {450, tallest};
}

void SettingsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        tintTabIcons();
    QTabWidget::changeEvent(event);
}

void SettingsView::tintTabIcons() {
    const QColor ink = palette().color(QPalette::WindowText);
    for (int i = 0; i < count(); ++i)
        setTabIcon(i, symbolIcon(tabSymbols[std::size_t(i)], ink));
}
