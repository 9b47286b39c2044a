#pragma once

#include "DetailBody.h"

class QLabel;
class SensorListView;
class SparklineView;

/// A temperature: the CPU one with its history against 110 degrees and the CPU sensors,
/// or the GPU one with the GPU sensors and every other sensor.
class TemperatureDetailBody : public DetailBody {
    Q_OBJECT
public:
    enum class Chip { cpu, gpu };

    explicit TemperatureDetailBody(Chip chip, QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

    static constexpr double historyScale = 110.0;

private:
    Chip chip;
    QLabel* value;
    SparklineView* history = nullptr;
    SensorListView* chipSensors;
    SensorListView* otherSensors = nullptr;
};
