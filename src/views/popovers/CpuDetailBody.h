#pragma once

#include "DetailBody.h"

class CoreBarsView;
class QLabel;
class SparklineView;

/// CPU: the overall usage, its history and one bar per core.
class CpuDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit CpuDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    QLabel* overall;
    SparklineView* history;
    QLabel* perCoreCaption;
    CoreBarsView* coreBars;
};
