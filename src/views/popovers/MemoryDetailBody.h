#pragma once

#include "DetailBody.h"

class CapacitySummary;
class QLabel;
class SparklineView;

/// Memory: used and total, the share used, free space, the pressure level and the history.
class MemoryDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit MemoryDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    CapacitySummary* summary;
    QLabel* pressure;
    SparklineView* history;
};
