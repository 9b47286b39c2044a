#include "FanDetailBody.h"

#include "FanDetailContent.h"
#include "FanSpinnerIcon.h"
#include "PopoverStyle.h"
#include "PopoverText.h"
#include "QueuedRefresh.h"
#include "SpinnerMotion.h"
#include "SymbolLabel.h"
#include "monitors/SystemMonitor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

FanDetailBody::FanDetailBody(SystemMonitor& monitor, AppSettings& settings, QWidget* parent)
    : DetailBody(parent), monitor(monitor), settings(settings) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    fanIcon = makeFanIcon();
    speed = PopoverStyle::label({}, 18, QFont::Bold, this);
    speed->setObjectName(QStringLiteral("speed"));

    auto* readout = new QVBoxLayout;
    readout->setSpacing(0);
    readout->addWidget(PopoverStyle::caption(QStringLiteral("Fan Speed"), this));
    readout->addWidget(speed);
    auto* top = new QHBoxLayout;
    top->setSpacing(10);
    top->addWidget(fanIcon);
    top->addLayout(readout);
    top->addStretch();
    column->addLayout(top);
    column->addSpacing(4);
    column->addWidget(makeFanSection());
}

QWidget* FanDetailBody::makeFanIcon() {
    auto* icon = new FanSpinnerIcon(28, this);
    auto follow = [this, icon] {
        const SpinnerInputs inputs =
            spinnerInputs(monitor.fans(), static_cast<double>(monitor.fanSpeed()),
                          static_cast<double>(monitor.fanMaxSpeed()));
        icon->setDuration(inputs.duration);
        icon->setSpinning(inputs.isSpinning);
    };
    auto* queued = new QueuedRefresh(follow, icon);
    queued->watch(&monitor, &SystemMonitor::objectWillChange);
    follow();
    return icon;
}

QWidget* FanDetailBody::makeFanSection() {
    auto* section = new FanDetailContent(monitor, settings, this);
    section->setObjectName(QStringLiteral("fanSection"));
    return section;
}

void FanDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                            const QColor& accent) {
    if (auto* symbol = qobject_cast<SymbolLabel*>(fanIcon))
        symbol->setColor(accent);
    PopoverStyle::setFanReading(speed, !monitor.fans().empty(),
                                static_cast<double>(monitor.fanSpeed()), accent);
}
