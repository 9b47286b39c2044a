#include "DiskDetailBody.h"

#include "ColoredProgressBar.h"
#include "PopoverStyle.h"
#include "PopoverText.h"
#include "monitors/SystemMonitor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

DiskDetailBody::DiskDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    amount = PopoverStyle::label({}, 18, QFont::Bold, this);
    amount->setObjectName(QStringLiteral("amount"));
    used = PopoverStyle::label({}, 10, QFont::Normal, this);
    used->setObjectName(QStringLiteral("used"));
    free = PopoverStyle::secondaryLabel({}, this);
    free->setObjectName(QStringLiteral("free"));
    storageMap = new ColoredProgressBar(12, this);

    auto* usage = new QHBoxLayout;
    usage->addWidget(used);
    usage->addStretch();
    usage->addWidget(free);

    column->addWidget(amount);
    column->addLayout(usage);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Storage Map"), this));
    column->addWidget(storageMap);
}

void DiskDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                             const QColor& accent) {
    amount->setText(QString::asprintf("%.0f / %.0f GB", monitor.diskUsed(), monitor.diskTotal()));
    PopoverStyle::setTextColor(amount, accent);
    used->setText(percentText(monitor.diskFraction()) + QStringLiteral(" used"));
    free->setText(
        QString::asprintf("%.0f GB free", std::max(0.0, monitor.diskTotal() - monitor.diskUsed())));
    storageMap->setColor(accent);
    storageMap->setValue(monitor.diskFraction());
}
