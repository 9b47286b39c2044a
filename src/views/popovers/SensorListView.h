#pragma once

#include "monitors/ThermalReadings.h"

#include <QColor>
#include <QWidget>

#include <vector>

class QLabel;
class QVBoxLayout;

/// A list of temperature sensors, one row each: the label on the left, the temperature
/// on the right in `color` (orange from 75 °C, red from 90 °C).
class SensorListView : public QWidget {
    Q_OBJECT
public:
    explicit SensorListView(QWidget* parent = nullptr);

    void setSensors(const std::vector<TemperatureSensor>& sensors, const QColor& color);

    /// How many sensor rows are shown.
    int rowCount() const { return static_cast<int>(shown); }

private:
    struct Row {
        QWidget* widget;
        QLabel* label;
        QLabel* value;
    };
    void addRow();

    QVBoxLayout* column;
    QLabel* emptyMark;
    std::vector<Row> rows; // rows past `shown` are hidden and kept for reuse
    std::size_t shown = 0;
};
