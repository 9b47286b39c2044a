#pragma once

#include "DetailBody.h"

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
    QLabel* amount;
    QLabel* used;
    QLabel* free;
    QLabel* pressure;
    SparklineView* history;
};
