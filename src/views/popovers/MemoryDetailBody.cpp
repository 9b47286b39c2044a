#include "MemoryDetailBody.h"

#include "CapacitySummary.h"
#include "DetailFigureText.h"
#include "FigureRowsView.h"
#include "MemoryPressure.h"
#include "PopoverStyle.h"
#include "PopoverText.h"
#include "SparklineView.h"
#include "monitors/SystemMonitor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

MemoryDetailBody::MemoryDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    summary = new CapacitySummary(this);
    pressure = PopoverStyle::label({}, 10, QFont::DemiBold, this);
    pressure->setObjectName(QStringLiteral("pressure"));
    limit = PopoverStyle::secondaryLabel({}, this);
    limit->setObjectName(QStringLiteral("limit"));
    limit->hide();
    history = new SparklineView(56, this);
    history->setMaxValue(100.0);
    processes = new FigureRowsView(TopProcesses::shown, TopProcesses::shown, this);
    processes->setObjectName(QStringLiteral("processes"));

    auto* pressureRow = new QHBoxLayout;
    pressureRow->setSpacing(4);
    pressureRow->addWidget(PopoverStyle::secondaryLabel(QStringLiteral("Pressure:"), this));
    pressureRow->addWidget(pressure);
    pressureRow->addStretch();

    column->addWidget(summary);
    column->addLayout(pressureRow);
    column->addWidget(limit);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("History"), this));
    column->addWidget(history);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Top Processes (resident)"), this));
    column->addWidget(processes);
}

void MemoryDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                               const QColor& accent) {
    const double fraction = monitor.memoryFraction();
    summary->setFigures(
        QString::asprintf("%.1f / %.1f GB", monitor.memoryUsed(), monitor.memoryTotal()), fraction,
        QString::asprintf("%.1f GB free",
                          std::max(0.0, monitor.memoryTotal() - monitor.memoryUsed())),
        accent);
    const MemoryPressure level = memoryPressure(fraction);
    pressure->setText(memoryPressureText(level));
    PopoverStyle::setTextColor(pressure, memoryPressureColor(level));
    // A note only: the figures above stay the machine's.
    limit->setText(memoryLimitText(monitor.memoryLimit(), monitor.memoryTotal()));
    limit->setVisible(!limit->text().isEmpty());
    history->setColor(accent);
    history->setData(scaledHistory(monitor.memoryHistory(), 100.0));
    processes->setRows(processRows(monitor.largestProcesses(), byteSizeText), accent);
}
