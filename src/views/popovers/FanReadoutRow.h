#pragma once

#include "monitors/ThermalReadings.h"

#include <QColor>
#include <QWidget>

class FanDetailsLine;
class QLabel;

/// One fan, read only: "Fan " and its 1-based number, its speed with " RPM" (or "Idle"
/// while it stands still) in the fan colour, and its figures below.
class FanReadoutRow : public QWidget {
    Q_OBJECT
public:
    explicit FanReadoutRow(QWidget* parent = nullptr);
    void setFan(const FanInfo& fan, const QColor& sensorColor);

private:
    QLabel* name;
    QLabel* speed;
    FanDetailsLine* details;
};
