#pragma once

#include "DetailBody.h"

class ColoredProgressBar;
class CapacitySummary;
class FigureRowsView;

/// Disk: used and total, the share used, free space and a storage map bar of the root
/// volume, then every mounted local file system with its used and total space.
class DiskDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit DiskDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    CapacitySummary* summary;
    ColoredProgressBar* storageMap;
    FigureRowsView* volumes;
};
