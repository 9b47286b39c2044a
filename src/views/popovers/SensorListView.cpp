#include "SensorListView.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "views/menubar/MenuBarColor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

SensorListView::SensorListView(QWidget* parent) : QWidget(parent) {
    column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    emptyMark = PopoverStyle::secondaryLabel(QStringLiteral("—"), this);
    column->addWidget(emptyMark);
}

void SensorListView::setSensors(const std::vector<TemperatureSensor>& sensors,
                                const QColor& color) {
    while (rows.size() < sensors.size())
        addRow();
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].widget->setVisible(i < sensors.size());
    shown = sensors.size();
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        rows[i].label->setText(QString::fromStdString(sensors[i].label));
        rows[i].value->setText(temperatureText(sensors[i].value));
        PopoverStyle::setTemperatureColor(rows[i].value, sensors[i].value, color);
    }
    emptyMark->setVisible(sensors.empty());
}

void SensorListView::addRow() {
    auto* widget = new QWidget(this);
    auto* line = new QHBoxLayout(widget);
    line->setContentsMargins(0, 0, 0, 0);
    auto* label = PopoverStyle::label({}, 10, QFont::Normal, widget);
    auto* value = PopoverStyle::label({}, 10, QFont::Medium, widget);
    line->addWidget(label);
    line->addStretch();
    line->addWidget(value);
    column->addWidget(widget);
    rows.push_back({widget, label, value});
}
