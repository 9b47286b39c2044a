#pragma once

#include "DetailBody.h"

class QLabel;
class SparklineView;

/// One network direction: its current rate and its history.
class NetworkRateDetailBody : public DetailBody {
    Q_OBJECT
public:
    enum class Direction { download, upload };

    explicit NetworkRateDetailBody(Direction direction, QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    Direction direction;
    QLabel* rate;
    SparklineView* history;
};
