#pragma once

#include "DetailBody.h"

class CapacitySummary;
class FigureRowsView;
class QLabel;
class SparklineView;

/// Memory: used and total, the share used, free space, the pressure level, a note when a
/// control group limits this session to less than is installed, the history and the
/// processes holding the most memory.
class MemoryDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit MemoryDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    CapacitySummary* summary;
    QLabel* pressure;
    QLabel* limit;
    SparklineView* history;
    FigureRowsView* processes;
};
