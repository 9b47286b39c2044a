#include "FanRowsView.h"

#include "PopoverStyle.h"
#include "PopoverText.h"
#include "QueuedRefresh.h"
#include "SensorAccent.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

FanRowsView::FanRowsView(SystemMonitor& monitor, AppSettings& settings, QWidget* parent)
    : QWidget(parent), monitor(monitor), settings(settings) {
    column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    auto* queued = new QueuedRefresh([this] { refresh(); }, this);
    queued->watch(&monitor, &SystemMonitor::objectWillChange);
    queued->watch(&settings, &AppSettings::objectWillChange);
    refresh();
}

void FanRowsView::refresh() {
    const auto& fans = monitor.fans();
    while (rows.size() < fans.size())
        addRow();
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].widget->setVisible(i < fans.size());
    shown = fans.size();
    const QColor color = sensorAccentColor(SensorType::fan, settings);
    for (std::size_t i = 0; i < fans.size(); ++i) {
        rows[i].name->setText(QStringLiteral("Fan ") + QString::number(fans[i].id + 1));
        rows[i].speed->setText(fans[i].actual > 0 ? rpmText(fans[i].actual)
                                                  : QStringLiteral("Idle"));
        PopoverStyle::setTextColor(rows[i].speed, color);
    }
}

void FanRowsView::addRow() {
    auto* widget = new QWidget(this);
    auto* line = new QHBoxLayout(widget);
    line->setContentsMargins(0, 0, 0, 0);
    auto* name = PopoverStyle::secondaryLabel({}, widget);
    auto* speed = PopoverStyle::label({}, 10, QFont::Medium, widget);
    line->addWidget(name);
    line->addStretch();
    line->addWidget(speed);
    column->addWidget(widget);
    rows.push_back({widget, name, speed});
}
