#include "MemoryDetailBody.h"

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
    amount = PopoverStyle::label({}, 18, QFont::Bold, this);
    amount->setObjectName(QStringLiteral("amount"));
    used = PopoverStyle::label({}, 10, QFont::Normal, this);
    used->setObjectName(QStringLiteral("used"));
    free = PopoverStyle::secondaryLabel({}, this);
    free->setObjectName(QStringLiteral("free"));
    pressure = PopoverStyle::label({}, 10, QFont::DemiBold, this);
    pressure->setObjectName(QStringLiteral("pressure"));
    history = new SparklineView(56, this);
    history->setMaxValue(100.0);

    auto* usage = new QHBoxLayout;
    usage->addWidget(used);
    usage->addStretch();
    usage->addWidget(free);
    auto* pressureRow = new QHBoxLayout;
    pressureRow->setSpacing(4);
    pressureRow->addWidget(PopoverStyle::secondaryLabel(QStringLiteral("Pressure:"), this));
    pressureRow->addWidget(pressure);
    pressureRow->addStretch();

    column->addWidget(amount);
    column->addLayout(usage);
    column->addLayout(pressureRow);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("History"), this));
    column->addWidget(history);
}

void MemoryDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                               const QColor& accent) {
    const double fraction = monitor.memoryFraction();
    amount->setText(
        QString::asprintf("%.1f / %.1f GB", monitor.memoryUsed(), monitor.memoryTotal()));
    PopoverStyle::setTextColor(amount, accent);
    used->setText(percentText(fraction) + QStringLiteral(" used"));
    free->setText(QString::asprintf("%.1f GB free",
                                    std::max(0.0, monitor.memoryTotal() - monitor.memoryUsed())));
    const MemoryPressure level = memoryPressure(fraction);
    pressure->setText(memoryPressureText(level));
    PopoverStyle::setTextColor(pressure, memoryPressureColor(level));
    history->setColor(accent);
    history->setData(scaledHistory(monitor.memoryHistory(), 100.0));
}
