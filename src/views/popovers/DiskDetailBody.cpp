#include "DiskDetailBody.h"

#include "CapacitySummary.h"
#include "ColoredProgressBar.h"
#include "DetailFigureText.h"
#include "FigureRowsView.h"
#include "PopoverStyle.h"
#include "monitors/SystemMonitor.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Past this many the list would push the popover off a small screen.
constexpr int shownVolumes = 8;

} // namespace

DiskDetailBody::DiskDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    summary = new CapacitySummary(this);
    storageMap = new ColoredProgressBar(12, this);
    volumes = new FigureRowsView(0, shownVolumes, this);
    volumes->setObjectName(QStringLiteral("volumes"));

    column->addWidget(summary);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Storage Map"), this));
    column->addWidget(storageMap);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("File Systems"), this));
    column->addWidget(volumes);
}

void DiskDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                             const QColor& accent) {
    summary->setFigures(
        QString::asprintf("%.0f / %.0f GB", monitor.diskUsed(), monitor.diskTotal()),
        monitor.diskFraction(), QString::asprintf("%.0f GB free", monitor.diskAvailable()), accent);
    storageMap->setColor(accent);
    storageMap->setValue(monitor.diskFraction());
    volumes->setRows(volumeRows(monitor.mountedVolumes()), accent);
}
