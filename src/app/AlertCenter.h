#pragma once

#include "linux/DesktopNotifications.h"
#include "monitors/AlertTracker.h"
#include "monitors/DetailWatch.h"
#include "tray/SensorType.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>
#include <string>

class AppSettings;
class SystemMonitor;

/// Holds every sample against the alert settings and tells the desktop when something is
/// wrong: a hot or busy CPU, critical memory pressure, a full root volume, fans handed
/// back to automatic control. A click on a notification opens that kind's detail.
class AlertCenter : public QObject {
    Q_OBJECT
public:
    AlertCenter(SystemMonitor& monitor, AppSettings& settings,
                std::function<void(SensorType)> openDetail, QObject* parent = nullptr);

private:
    void onSample();
    void notify(const FiredAlert& alert);

    SystemMonitor& monitor;
    AppSettings& settings;
    std::function<void(SensorType)> openDetail;
    AlertTracker tracker;
    DesktopNotifications notifications;
    QElapsedTimer clock;
    // The top processes are read only while a CPU or memory alert is pending, so the
    // notification can name one.
    DetailWatch processes;
    std::string lastFanProblem;
};
