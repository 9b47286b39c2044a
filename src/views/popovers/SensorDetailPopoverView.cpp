#include "SensorDetailPopoverView.h"

#include "CpuDetailBody.h"
#include "DiskDetailBody.h"
#include "FanDetailBody.h"
#include "MemoryDetailBody.h"
#include "NetworkDetailBody.h"
#include "NetworkRateDetailBody.h"
#include "PopoverStyle.h"
#include "QueuedRefresh.h"
#include "SensorAccent.h"
#include "SymbolLabel.h"
#include "TemperatureDetailBody.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "tray/Symbols.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

DetailBody* makeBody(SensorType sensor, SystemMonitor& monitor, AppSettings& settings,
                     QWidget* parent) {
    using Direction = NetworkRateDetailBody::Direction;
    using Chip = TemperatureDetailBody::Chip;
    switch (sensor) {
    case SensorType::cpu:
        return new CpuDetailBody(parent);
    case SensorType::memory:
        return new MemoryDetailBody(parent);
    case SensorType::disk:
        return new DiskDetailBody(parent);
    case SensorType::networkIn:
        return new NetworkRateDetailBody(Direction::download, parent);
    case SensorType::networkOut:
        return new NetworkRateDetailBody(Direction::upload, parent);
    case SensorType::network:
        return new NetworkDetailBody(parent);
    case SensorType::cpuTemp:
        return new TemperatureDetailBody(Chip::cpu, parent);
    case SensorType::gpuTemp:
        return new TemperatureDetailBody(Chip::gpu, parent);
    case SensorType::fan:
        return new FanDetailBody(monitor, settings, parent);
    }
    return new CpuDetailBody(parent);
}

DetailFigures detailFiguresOf(SensorType sensor) {
    switch (sensor) {
    case SensorType::cpu:
        return DetailFigure::busiestProcesses;
    case SensorType::memory:
        return DetailFigure::largestProcesses | DetailFigure::memoryLimit;
    case SensorType::disk:
        return DetailFigure::mountedVolumes;
    default:
        return 0;
    }
}

QString fromStd(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

SensorDetailPopoverView::SensorDetailPopoverView(SensorType sensor, SystemMonitor& monitor,
                                                 AppSettings& settings,
                                                 std::function<void()> onOpenSettings,
                                                 QWidget* parent)
    : QWidget(parent), sensor_(sensor), monitor(monitor), settings(settings),
      onOpenSettings(std::move(onOpenSettings)) {
    setFixedWidth(popoverWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 12, 14, 14);
    column->setSpacing(8);

    symbol = new SymbolLabel(sensorSymbolName(sensor), 18, {}, this);
    auto* title = PopoverStyle::label(fromStd(rawValue(sensor)), 14, QFont::Bold, this);
    title->setObjectName(QStringLiteral("title"));
    settingsButton = new QToolButton(this);
    settingsButton->setObjectName(QStringLiteral("settingsButton"));
    settingsButton->setText(QStringLiteral("Settings…"));
    settingsButton->setAutoRaise(true);
    settingsButton->setCursor(Qt::PointingHandCursor);
    setSettingsSymbol();
    connect(settingsButton, &QToolButton::clicked, this, [this] {
        if (this->onOpenSettings)
            this->onOpenSettings();
    });

    auto* header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(symbol);
    header->addWidget(title);
    header->addStretch();
    header->addWidget(settingsButton);
    column->addLayout(header);
    column->addWidget(PopoverStyle::divider(this));

    body = makeBody(sensor, monitor, settings, this);
    column->addWidget(body);

    queuedRefresh = new QueuedRefresh([this] { refresh(); }, this);
    queuedRefresh->watch(&monitor, &SystemMonitor::objectWillChange);
    queuedRefresh->watch(&settings, &AppSettings::objectWillChange);
    refresh();
}

void SensorDetailPopoverView::setSettingsSymbol() {
    const QIcon gear = symbolIcon("gear", settingsButton->palette().color(QPalette::ButtonText));
    settingsButton->setIcon(gear);
    settingsButton->setToolButtonStyle(gear.isNull() ? Qt::ToolButtonTextOnly
                                                     : Qt::ToolButtonTextBesideIcon);
}

QSize SensorDetailPopoverView::sizeHint() const {
    return {popoverWidth, layout()->sizeHint().height()};
}

void SensorDetailPopoverView::refresh() {
    const QColor accent = sensorAccentColor(sensor_, settings);
    symbol->setColor(accent);
    body->refresh(monitor, settings, accent);
}

void SensorDetailPopoverView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && queuedRefresh) {
        setSettingsSymbol();
        queuedRefresh->schedule();
    }
    QWidget::changeEvent(event);
}

void SensorDetailPopoverView::showEvent(QShowEvent* event) {
    if (const DetailFigures figures = detailFiguresOf(sensor_))
        detailWatch = monitor.watchDetails(figures);
    QWidget::showEvent(event);
}

void SensorDetailPopoverView::hideEvent(QHideEvent* event) {
    detailWatch = {};
    QWidget::hideEvent(event);
}
