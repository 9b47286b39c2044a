#include "NetworkRateDetailBody.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "SparklineView.h"
#include "monitors/SystemMonitor.h"

#include <QLabel>
#include <QVBoxLayout>

NetworkRateDetailBody::NetworkRateDetailBody(Direction direction, QWidget* parent)
    : DetailBody(parent), direction(direction) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    rate = PopoverStyle::label({}, 18, QFont::Bold, this);
    rate->setObjectName(QStringLiteral("rate"));
    history = new SparklineView(56, this);
    column->addWidget(PopoverStyle::caption(direction == Direction::download
                                                ? QStringLiteral("Download Rate")
                                                : QStringLiteral("Upload Rate"),
                                            this));
    column->addWidget(rate);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("History"), this));
    column->addWidget(history);
}

void NetworkRateDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                                    const QColor& accent) {
    const bool download = direction == Direction::download;
    const auto& samples = download ? monitor.networkInHistory() : monitor.networkOutHistory();
    rate->setText(popoverRateText(download ? monitor.networkBytesIn() : monitor.networkBytesOut()));
    PopoverStyle::setTextColor(rate, accent);
    history->setColor(accent);
    history->setMaxValue(rateScaleMaximum(samples));
    history->setData(samples);
}
