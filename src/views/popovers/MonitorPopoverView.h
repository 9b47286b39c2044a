#pragma once

#include "tray/SensorType.h"

#include <QWidget>

#include <functional>
#include <vector>

class AppSettings;
class ColoredProgressBar;
class CoreBarsView;
class MonitorSection;
class QFrame;
class QLabel;
class QToolButton;
class QVBoxLayout;
class QueuedRefresh;
class SparklineView;
class SymbolLabel;
class SystemMonitor;

/// The content of the application's own tray popover: every reading at once, in the
/// sections CPU, Memory, Disk, Network and Temperature (each hidden by its show setting),
/// then a footer with the sampling period, buttons naming the desktop's system monitor
/// and log viewer (each hidden when none is installed) and "Quit". Redraws after every change the
/// monitor or the settings announce.
///
/// A tap on a section calls `showDetail` with its kind (Network → network, Temperature →
/// cpuTemp); the caller opens that detail with no anchor, as from the main popover.
/// The width is fixed; the height follows the visible sections, so the window holding
/// it should size itself to the view's size hint (e.g. a layout with SetFixedSize).
class MonitorPopoverView : public QWidget {
    Q_OBJECT
public:
    static constexpr int popoverWidth = 300;

    MonitorPopoverView(SystemMonitor& monitor, AppSettings& settings,
                       std::function<void(SensorType)> showDetail, QWidget* parent = nullptr);

    QSize sizeHint() const override;

    /// Re-reads the published readings and settings now. Change notices call it queued.
    void refresh();

protected:
    void changeEvent(QEvent* event) override;

private:
    MonitorSection* addSection(const QString& title, const QString& icon, SensorType kind);
    void buildCpuSection();
    void buildMemorySection();
    void buildDiskSection();
    void buildNetworkSection();
    void buildTemperatureSection();
    void buildFooter();
    void setFooterSymbols();
    void refreshValues();
    void refreshVisibility();

    SystemMonitor& monitor;
    AppSettings& settings;
    std::function<void(SensorType)> showDetail;
    QueuedRefresh* queuedRefresh = nullptr;
    QVBoxLayout* column = nullptr;

    struct SectionEntry {
        QFrame* divider;
        MonitorSection* section;
    };
    std::vector<SectionEntry> sections;
    QFrame* footerDivider = nullptr;

    MonitorSection* cpuSection = nullptr;
    QLabel* cpuUsage = nullptr;
    QLabel* cpuCores = nullptr;
    ColoredProgressBar* cpuBar = nullptr;
    CoreBarsView* coreBars = nullptr;
    SparklineView* cpuGraph = nullptr;

    MonitorSection* memorySection = nullptr;
    QLabel* memoryAmount = nullptr;
    QLabel* memoryPercent = nullptr;
    ColoredProgressBar* memoryBar = nullptr;
    SparklineView* memoryGraph = nullptr;

    MonitorSection* diskSection = nullptr;
    QLabel* diskAmount = nullptr;
    QLabel* diskPercent = nullptr;
    ColoredProgressBar* diskBar = nullptr;

    MonitorSection* networkSection = nullptr;
    SymbolLabel* downloadArrow = nullptr;
    SymbolLabel* uploadArrow = nullptr;
    QLabel* downloadRate = nullptr;
    QLabel* uploadRate = nullptr;
    SparklineView* networkGraph = nullptr;

    MonitorSection* temperatureSection = nullptr;
    QLabel* temperatureValue = nullptr;
    QWidget* fanRow = nullptr;
    QLabel* fanValue = nullptr;
    SparklineView* temperatureGraph = nullptr;

    QLabel* intervalLabel = nullptr;
    QToolButton* activityMonitorButton = nullptr;
    QToolButton* consoleButton = nullptr;
    QToolButton* quitButton = nullptr;
};
