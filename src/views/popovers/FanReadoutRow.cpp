#include "FanReadoutRow.h"

#include "FanDetailsLine.h"
#include "PopoverStyle.h"
#include "PopoverText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

FanReadoutRow::FanReadoutRow(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* line = new QHBoxLayout;
    name = PopoverStyle::secondaryLabel({}, this);
    speed = PopoverStyle::label({}, 10, QFont::Medium, this);
    line->addWidget(name);
    line->addStretch();
    line->addWidget(speed);
    column->addLayout(line);
    details = new FanDetailsLine(this);
    column->addWidget(details);
}

void FanReadoutRow::setFan(const FanInfo& fan, const QColor& sensorColor) {
    name->setText(QStringLiteral("Fan ") + QString::number(fan.id + 1));
    speed->setText(fan.actual > 0 ? rpmText(fan.actual) : QStringLiteral("Idle"));
    PopoverStyle::setTextColor(speed, sensorColor);
    details->setFan(fan);
}
