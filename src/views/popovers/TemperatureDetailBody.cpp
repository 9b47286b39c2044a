#include "TemperatureDetailBody.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "SensorGroups.h"
#include "SensorListView.h"
#include "SparklineView.h"
#include "monitors/SystemMonitor.h"
#include "views/menubar/MenuBarColor.h"

#include <QLabel>
#include <QVBoxLayout>

TemperatureDetailBody::TemperatureDetailBody(Chip chip, QWidget* parent)
    : DetailBody(parent), chip(chip) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    value = PopoverStyle::label({}, 18, QFont::Bold, this);
    value->setObjectName(QStringLiteral("temperature"));
    column->addWidget(value);
    chipSensors = new SensorListView(this);
    chipSensors->setObjectName(chip == Chip::cpu ? QStringLiteral("cpuSensors")
                                                 : QStringLiteral("gpuSensors"));
    if (chip == Chip::cpu) {
        history = new SparklineView(56, this);
        history->setMaxValue(historyScale);
        column->addWidget(PopoverStyle::caption(QStringLiteral("History"), this));
        column->addWidget(history);
        column->addSpacing(4);
        column->addWidget(PopoverStyle::caption(QStringLiteral("All CPU Sensors"), this));
        column->addWidget(chipSensors);
        return;
    }
    otherSensors = new SensorListView(this);
    otherSensors->setObjectName(QStringLiteral("otherSensors"));
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("All GPU Sensors"), this));
    column->addWidget(chipSensors);
    column->addSpacing(4);
    column->addWidget(PopoverStyle::caption(QStringLiteral("Other Sensors"), this));
    column->addWidget(otherSensors);
}

void TemperatureDetailBody::refresh(const SystemMonitor& monitor, const AppSettings&,
                                    const QColor& accent) {
    const double celsius = chip == Chip::cpu ? monitor.temperature() : monitor.gpuTemperature();
    value->setText(temperatureText(celsius));
    PopoverStyle::setTemperatureColor(value, celsius, accent);
    const SensorGroups groups = groupSensors(monitor.allSensors());
    if (chip == Chip::cpu) {
        history->setColor(accent);
        history->setData(monitor.temperatureHistory());
        chipSensors->setSensors(groups.cpu, accent);
        return;
    }
    chipSensors->setSensors(groups.gpu, accent);
    otherSensors->setSensors(groups.other, accent);
}
