#include "DiskDetailBody.h"

#include "CapacitySummary.h"
#include "ColoredProgressBar.h"
#include "PopoverStyle.h"
#include "monitors/SystemMonitor.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

DiskDetailBody::DiskDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    summary = new CapacitySummary(this);
    storageMap = new ColoredProgressBar(12, this);

    column->addWidget(summary);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Storage Map"), this));
    column->addWidget(storageMap);
}

void DiskDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                             const QColor& accent) {
    summary->setFigures(
        QString::asprintf("%.0f / %.0f GB", monitor.diskUsed(), monitor.diskTotal()),
        monitor.diskFraction(), QString::asprintf("%.0f GB free", monitor.diskAvailable()), accent);
    storageMap->setColor(accent);
    storageMap->setValue(monitor.diskFraction());
}
