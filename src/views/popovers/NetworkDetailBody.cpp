#include "NetworkDetailBody.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "SparklineView.h"
#include "SymbolLabel.h"
#include "monitors/SystemMonitor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

NetworkDetailBody::NetworkDetailBody(QWidget* parent) : DetailBody(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    downloadArrow = new SymbolLabel(QStringLiteral("arrow.down"), 16, QStringLiteral("↓"), this);
    uploadArrow = new SymbolLabel(QStringLiteral("arrow.up"), 16, QStringLiteral("↑"), this);
    downloadRate = PopoverStyle::label({}, 15, QFont::Bold, this);
    downloadRate->setObjectName(QStringLiteral("downloadRate"));
    uploadRate = PopoverStyle::label({}, 15, QFont::Bold, this);
    uploadRate->setObjectName(QStringLiteral("uploadRate"));
    for (auto* arrow : {downloadArrow, uploadArrow})
        arrow->setFont(PopoverStyle::font(arrow->font(), 15, QFont::Bold));

    auto* rates = new QHBoxLayout;
    rates->setSpacing(4);
    rates->addWidget(downloadArrow);
    rates->addWidget(downloadRate);
    rates->addStretch();
    rates->addWidget(uploadArrow);
    rates->addWidget(uploadRate);
    column->addLayout(rates);

    downloadHistory = new SparklineView(44, this);
    uploadHistory = new SparklineView(44, this);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Download History"), this));
    column->addWidget(downloadHistory);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Upload History"), this));
    column->addWidget(uploadHistory);
}

void NetworkDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                                const QColor& accent) {
    downloadArrow->setColor(accent);
    uploadArrow->setColor(accent);
    downloadRate->setText(popoverRateText(monitor.networkBytesIn()));
    uploadRate->setText(popoverRateText(monitor.networkBytesOut()));
    for (auto [graph, samples] : {std::pair{downloadHistory, &monitor.networkInHistory()},
                                  {uploadHistory, &monitor.networkOutHistory()}}) {
        graph->setColor(accent);
        graph->setMaxValue(rateScaleMaximum(*samples));
        graph->setData(*samples);
    }
}
