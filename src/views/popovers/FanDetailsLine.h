#pragma once

#include "monitors/ThermalReadings.h"

#include <QWidget>

class QLabel;

/// One fan's "Min: ", "Target: " and "Max: " figures in the secondary colour.
class FanDetailsLine : public QWidget {
    Q_OBJECT
public:
    explicit FanDetailsLine(QWidget* parent = nullptr);
    void setFan(const FanInfo& fan);

private:
    QLabel* minimum;
    QLabel* target;
    QLabel* maximum;
};
