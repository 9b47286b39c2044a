#pragma once

#include "monitors/DetailWatch.h"
#include "tray/SensorType.h"

#include <QWidget>

#include <functional>

class AppSettings;
class DetailBody;
class QToolButton;
class QueuedRefresh;
class SymbolLabel;
class SystemMonitor;

/// The detail popover of one kind of reading: a header with the kind's title and symbol
/// and a button that calls `onOpenSettings`, then the kind's value, graphs and
/// breakdown. Redraws after every change the monitor or the settings announce.
/// The width is fixed; the height fits the content. While shown it keeps the monitor
/// sampling the figures only its body shows (the top processes, the file systems).
class SensorDetailPopoverView : public QWidget {
    Q_OBJECT
public:
    static constexpr int popoverWidth = 320;

    SensorDetailPopoverView(SensorType sensor, SystemMonitor& monitor, AppSettings& settings,
                            std::function<void()> onOpenSettings, QWidget* parent = nullptr);

    SensorType sensor() const { return sensor_; }
    QSize sizeHint() const override;

    /// Re-reads the published readings and settings now. Change notices call it queued.
    void refresh();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void setSettingsSymbol();

    SensorType sensor_;
    SystemMonitor& monitor;
    AppSettings& settings;
    std::function<void()> onOpenSettings;
    SymbolLabel* symbol;
    QToolButton* settingsButton;
    DetailBody* body;
    QueuedRefresh* queuedRefresh = nullptr;
    DetailWatch detailWatch;
};
