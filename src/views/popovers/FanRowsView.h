#pragma once

#include <QWidget>

#include <vector>

class AppSettings;
class QLabel;
class QVBoxLayout;
class QueuedRefresh;
class SystemMonitor;

/// One read-only row per fan of the last reading: "Fan " and its 1-based number, and
/// its speed with " RPM" in the fan colour, or "Idle" while it stands still.
/// Follows the monitor and the settings by itself.
class FanRowsView : public QWidget {
    Q_OBJECT
public:
    FanRowsView(SystemMonitor& monitor, AppSettings& settings, QWidget* parent = nullptr);

    void refresh();
    /// How many fan rows are shown.
    int rowCount() const { return static_cast<int>(shown); }

private:
    struct Row {
        QWidget* widget;
        QLabel* name;
        QLabel* speed;
    };
    void addRow();

    SystemMonitor& monitor;
    AppSettings& settings;
    QVBoxLayout* column;
    std::vector<Row> rows; // rows past `shown` are hidden and kept for reuse
    std::size_t shown = 0;
};
