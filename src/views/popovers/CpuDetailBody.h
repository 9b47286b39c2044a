#pragma once

#include "DetailBody.h"

class CoreBarsView;
class FigureRowsView;
class QLabel;
class SparklineView;

/// CPU: the overall usage and the busiest core, its history, one row per core and the
/// processes using the most CPU.
class CpuDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit CpuDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    QLabel* overall;
    QLabel* busiestCore;
    SparklineView* history;
    QLabel* perCoreCaption;
    CoreBarsView* coreBars;
    FigureRowsView* processes;
};
