#pragma once

#include "DetailBody.h"

class QLabel;

/// Fan: the current speed beside the fan symbol, then the fan section.
class FanDetailBody : public DetailBody {
    Q_OBJECT
public:
    FanDetailBody(SystemMonitor& monitor, AppSettings& settings, QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    /// The symbol beside the speed.
    QWidget* makeFanIcon();
    /// The section below the speed with the fans themselves; it follows the monitor
    /// and the settings on its own.
    QWidget* makeFanSection();

    SystemMonitor& monitor;
    AppSettings& settings;
    QWidget* fanIcon;
    QLabel* speed;
};
