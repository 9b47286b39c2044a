#include "CpuDetailBody.h"

#include "CoreBarsView.h"
#include "DetailFigureText.h"
#include "FigureRowsView.h"
#include "PopoverStyle.h"
#include "PopoverText.h"
#include "SparklineView.h"
#include "monitors/SystemMonitor.h"
#include "views/menubar/MenuBarValueText.h"

#include <QLabel>
#include <QVBoxLayout>

CpuDetailBody::CpuDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    overall = PopoverStyle::label({}, 18, QFont::Bold, this);
    overall->setObjectName(QStringLiteral("overall"));
    busiestCore = PopoverStyle::secondaryLabel({}, this);
    busiestCore->setObjectName(QStringLiteral("busiestCore"));
    history = new SparklineView(56, this);
    history->setMaxValue(100.0);
    perCoreCaption = PopoverStyle::caption({}, this);
    perCoreCaption->setObjectName(QStringLiteral("perCoreCaption"));
    coreBars = CoreBarsView::list(this);
    processes = new FigureRowsView(TopProcesses::shown, TopProcesses::shown, this);
    processes->setObjectName(QStringLiteral("processes"));
    column->addWidget(overall);
    column->addWidget(busiestCore);
    column->addWidget(PopoverStyle::caption(QStringLiteral("History"), this));
    column->addWidget(history);
    column->addSpacing(4);
    column->addWidget(perCoreCaption);
    column->addWidget(coreBars);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Top Processes (% of one core)"), this));
    column->addWidget(processes);
}

void CpuDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                            const QColor& accent) {
    overall->setText(QStringLiteral("Overall ") + percentText(monitor.cpuUsage()));
    PopoverStyle::setTextColor(overall, accent);
    const auto busiest = monitor.busiestCore();
    busiestCore->setText(busiest ? busiestCoreText(*busiest) : QStringLiteral("Busiest core: —"));
    history->setColor(accent);
    history->setData(scaledHistory(monitor.cpuHistory(), 100.0));
    perCoreCaption->setText(QStringLiteral("Per-Core Usage (") +
                            QString::number(monitor.coreUsages().size()) +
                            QStringLiteral(" cores)"));
    coreBars->setColor(accent);
    coreBars->setCores(monitor.coreUsages());
    processes->setRows(processRows(monitor.busiestProcesses(), coreShareText), accent);
}
