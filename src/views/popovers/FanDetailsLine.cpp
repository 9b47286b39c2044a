#include "FanDetailsLine.h"

#include "FanControlText.h"
#include "PopoverStyle.h"

#include <QHBoxLayout>
#include <QLabel>

FanDetailsLine::FanDetailsLine(QWidget* parent) : QWidget(parent) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(12);
    minimum = PopoverStyle::secondaryLabel({}, this);
    target = PopoverStyle::secondaryLabel({}, this);
    maximum = PopoverStyle::secondaryLabel({}, this);
    line->addWidget(minimum);
    line->addWidget(target);
    line->addWidget(maximum);
    line->addStretch();
}

void FanDetailsLine::setFan(const FanInfo& fan) {
    minimum->setText(fanFigureText("Min: ", fan.min));
    target->setText(fanFigureText("Target: ", fan.target));
    maximum->setText(fanFigureText("Max: ", fan.max));
}
