#pragma once

#include "DetailBody.h"

class ColoredProgressBar;
class CapacitySummary;

/// Disk: used and total, the share used, free space and a storage map bar.
class DiskDetailBody : public DetailBody {
    Q_OBJECT
public:
    explicit DiskDetailBody(QWidget* parent = nullptr);
    void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                 const QColor& accent) override;

private:
    CapacitySummary* summary;
    ColoredProgressBar* storageMap;
};
