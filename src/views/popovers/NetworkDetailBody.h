#pragma once

#include "DetailBody.h"

class QLabel;
class SparklineView;
class SymbolLabel;

/// Both network directions: the two rates and a history graph for each.
class NetworkDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit NetworkDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    SymbolLabel* downloadArrow;
    SymbolLabel* uploadArrow;
    QLabel* downloadRate;
    QLabel* uploadRate;
    SparklineView* downloadHistory;
    SparklineView* uploadHistory;
};
