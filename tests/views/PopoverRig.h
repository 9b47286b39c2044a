#pragma once

#include "monitors/SystemMonitor.h"
#include "support/SettingsHome.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

// A real monitor that never samples (the test publishes its readings) and whose helper
// is never installed, so the fan section offers its setup; settings in a scratch home.
struct PopoverRig {
    static SamplingMonitors withoutHelper(const SettingsHome& home) {
        SamplingMonitors monitors;
        monitors.thermalMonitor = std::make_unique<ThermalMonitor>(
            home.path("vorlune_smc_helper").toStdString(), "/bin/false");
        return monitors;
    }

    SettingsHome home;
    std::unique_ptr<AppSettings> store = home.open();
    AppSettings& settings = *store;
    SystemMonitor monitor{withoutHelper(home), false};
};

/// Runs what the views queued after a change notice.
inline void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// A left click in the middle of `widget`.
inline void click(QWidget* widget) {
    const QPointF at = QRectF(widget->rect()).center();
    for (auto [type, buttons] : {std::pair{QEvent::MouseButtonPress, Qt::LeftButton},
                                 {QEvent::MouseButtonRelease, Qt::NoButton}}) {
        QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton, buttons, {});
        QCoreApplication::sendEvent(widget, &event);
    }
}
