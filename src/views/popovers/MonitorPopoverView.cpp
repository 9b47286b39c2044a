#include "MonitorPopoverView.h"

#include "ColoredProgressBar.h"
#include "CoreBarsView.h"
#include "MonitorSection.h"
#include "PopoverStyle.h"
#include "PopoverText.h"
#include "QueuedRefresh.h"
#include "SensorAccent.h"
#include "SparklineView.h"
#include "SymbolLabel.h"
#include "ToolLauncher.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "tray/Symbols.h"
#include "views/menubar/MenuBarColor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr qreal valuePointSize = 11;
// The header and footer texts line up with the sections' padded content.
constexpr int sectionInset = 6;

QLabel* valueLabel(const QString& name, QWidget* parent) {
    auto* label = PopoverStyle::label({}, valuePointSize, QFont::Medium, parent);
    label->setObjectName(name);
    return label;
}

QLabel* secondaryValue(const QString& name, QWidget* parent) {
    auto* label = PopoverStyle::secondaryLabel({}, parent);
    label->setObjectName(name);
    return label;
}

// `left` at the leading edge, `right` (if any) at the trailing edge.
QHBoxLayout* row(QWidget* left, QWidget* right = nullptr) {
    auto* layout = new QHBoxLayout;
    layout->setSpacing(6);
    layout->addWidget(left);
    layout->addStretch();
    if (right)
        layout->addWidget(right);
    return layout;
}

QToolButton* footerButton(const QString& name, const QString& text, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setText(text);
    button->setAutoRaise(true);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

// Icons are drawn in the button text colour, so they are redrawn when the palette changes.
void setSymbol(QToolButton* button, std::string_view symbol) {
    const QIcon icon = symbolIcon(symbol, button->palette().color(QPalette::ButtonText));
    button->setIcon(icon);
    button->setToolButtonStyle(icon.isNull() ? Qt::ToolButtonTextOnly
                                             : Qt::ToolButtonTextBesideIcon);
}

// The button names the tool it opens; with none installed it is not shown at all.
void connectLauncher(QToolButton* button, ToolLauncher launcher) {
    const std::optional<LaunchCommand> found = launcher.command();
    button->setVisible(found.has_value());
    if (!found)
        return;
    button->setText(found->name);
    button->setToolTip(QStringLiteral("Open ") + found->name);
    QObject::connect(button, &QToolButton::clicked, button, [launcher] { launcher.launch(); });
}

} // namespace

MonitorPopoverView::MonitorPopoverView(SystemMonitor& monitor, AppSettings& settings,
                                       std::function<void(SensorType)> showDetail, QWidget* parent)
    : QWidget(parent), monitor(monitor), settings(settings), showDetail(std::move(showDetail)) {
    setFixedWidth(popoverWidth);
    column = new QVBoxLayout(this);
    column->setContentsMargins(10, 10, 10, 8);
    column->setSpacing(6);

    auto* header = PopoverStyle::label(QStringLiteral("Vorlune"), 13, QFont::Bold, this);
    header->setObjectName(QStringLiteral("header"));
    header->setContentsMargins(sectionInset, 0, sectionInset, 0);
    column->addWidget(header);
    column->addWidget(PopoverStyle::divider(this));

    buildCpuSection();
    buildMemorySection();
    buildDiskSection();
    buildNetworkSection();
    buildTemperatureSection();
    buildFooter();

    queuedRefresh = new QueuedRefresh([this] { refresh(); }, this);
    queuedRefresh->watch(&monitor, &SystemMonitor::objectWillChange);
    queuedRefresh->watch(&settings, &AppSettings::objectWillChange);
    refresh();
}

MonitorSection* MonitorPopoverView::addSection(const QString& title, const QString& icon,
                                               SensorType kind) {
    auto* divider = PopoverStyle::divider(this);
    auto* section = new MonitorSection(
        title, icon,
        [this, kind] {
            if (showDetail)
                showDetail(kind);
        },
        this);
    column->addWidget(divider);
    column->addWidget(section);
    sections.push_back({divider, section});
    return section;
}

void MonitorPopoverView::buildCpuSection() {
    cpuSection = addSection(QStringLiteral("CPU"), QStringLiteral("cpu"), SensorType::cpu);
    cpuSection->setObjectName(QStringLiteral("cpuSection"));
    cpuUsage = valueLabel(QStringLiteral("cpuUsage"), cpuSection);
    cpuCores = secondaryValue(QStringLiteral("cpuCores"), cpuSection);
    cpuBar = new ColoredProgressBar(6, cpuSection);
    coreBars = new CoreBarsView(18, cpuSection);
    cpuGraph = new SparklineView(28, cpuSection);
    cpuGraph->setMaxValue(1.0);
    auto* content = cpuSection->contentLayout();
    content->addLayout(row(cpuUsage, cpuCores));
    content->addWidget(cpuBar);
    content->addWidget(coreBars);
    content->addWidget(cpuGraph);
}

void MonitorPopoverView::buildMemorySection() {
    memorySection =
        addSection(QStringLiteral("Memory"), QStringLiteral("memorychip"), SensorType::memory);
    memorySection->setObjectName(QStringLiteral("memorySection"));
    memoryAmount = valueLabel(QStringLiteral("memoryAmount"), memorySection);
    memoryPercent = secondaryValue(QStringLiteral("memoryPercent"), memorySection);
    memoryBar = new ColoredProgressBar(6, memorySection);
    memoryGraph = new SparklineView(28, memorySection);
    memoryGraph->setMaxValue(1.0);
    auto* content = memorySection->contentLayout();
    content->addLayout(row(memoryAmount, memoryPercent));
    content->addWidget(memoryBar);
    content->addWidget(memoryGraph);
}

void MonitorPopoverView::buildDiskSection() {
    diskSection =
        addSection(QStringLiteral("Disk"), QStringLiteral("internaldrive"), SensorType::disk);
    diskSection->setObjectName(QStringLiteral("diskSection"));
    diskAmount = valueLabel(QStringLiteral("diskAmount"), diskSection);
    diskPercent = secondaryValue(QStringLiteral("diskPercent"), diskSection);
    diskBar = new ColoredProgressBar(6, diskSection);
    auto* content = diskSection->contentLayout();
    content->addLayout(row(diskAmount, diskPercent));
    content->addWidget(diskBar);
}

void MonitorPopoverView::buildNetworkSection() {
    networkSection =
        addSection(QStringLiteral("Network"), QStringLiteral("network"), SensorType::network);
    networkSection->setObjectName(QStringLiteral("networkSection"));
    downloadArrow =
        new SymbolLabel(QStringLiteral("arrow.down"), 12, QStringLiteral("↓"), networkSection);
    uploadArrow =
        new SymbolLabel(QStringLiteral("arrow.up"), 12, QStringLiteral("↑"), networkSection);
    downloadRate = valueLabel(QStringLiteral("downloadRate"), networkSection);
    uploadRate = valueLabel(QStringLiteral("uploadRate"), networkSection);
    networkGraph = new SparklineView(28, networkSection);
    auto* content = networkSection->contentLayout();
    for (auto [arrow, rate] : {std::pair{downloadArrow, downloadRate}, {uploadArrow, uploadRate}}) {
        auto* line = new QHBoxLayout;
        line->setSpacing(6);
        line->addWidget(arrow);
        line->addWidget(rate);
        line->addStretch();
        content->addLayout(line);
    }
    content->addWidget(networkGraph);
}

void MonitorPopoverView::buildTemperatureSection() {
    temperatureSection = addSection(QStringLiteral("Temperature"),
                                    QStringLiteral("thermometer.high"), SensorType::cpuTemp);
    temperatureSection->setObjectName(QStringLiteral("temperatureSection"));
    temperatureValue = valueLabel(QStringLiteral("temperatureValue"), temperatureSection);
    auto* content = temperatureSection->contentLayout();
    content->addLayout(
        row(PopoverStyle::label(QStringLiteral("CPU Temp"), 10, QFont::Normal, temperatureSection),
            temperatureValue));

    fanRow = new QWidget(temperatureSection);
    fanRow->setObjectName(QStringLiteral("fanRow"));
    fanValue = valueLabel(QStringLiteral("fanValue"), fanRow);
    auto* fanLayout =
        row(PopoverStyle::label(QStringLiteral("Fan Speed"), 10, QFont::Normal, fanRow), fanValue);
    fanLayout->setContentsMargins(0, 0, 0, 0);
    fanRow->setLayout(fanLayout);
    content->addWidget(fanRow);

    temperatureGraph = new SparklineView(28, temperatureSection);
    temperatureGraph->setMaxValue(110.0);
    content->addWidget(temperatureGraph);
}

void MonitorPopoverView::buildFooter() {
    footerDivider = PopoverStyle::divider(this);
    column->addWidget(footerDivider);

    intervalLabel = secondaryValue(QStringLiteral("intervalLabel"), this);
    intervalLabel->setContentsMargins(sectionInset, 0, sectionInset, 0);
    column->addWidget(intervalLabel);

    activityMonitorButton = footerButton(QStringLiteral("activityMonitorButton"),
                                         QStringLiteral("Activity Monitor"), this);
    consoleButton = footerButton(QStringLiteral("consoleButton"), QStringLiteral("Console"), this);
    quitButton = footerButton(QStringLiteral("quitButton"), QStringLiteral("Quit"), this);
    setFooterSymbols();
    connectLauncher(activityMonitorButton, ToolLauncher::systemMonitor());
    connectLauncher(consoleButton, ToolLauncher::logViewer());
    connect(quitButton, &QToolButton::clicked, this, [] { QCoreApplication::quit(); });

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(2);
    buttons->addWidget(activityMonitorButton);
    buttons->addWidget(consoleButton);
    buttons->addStretch();
    buttons->addWidget(quitButton);
    column->addLayout(buttons);
}

void MonitorPopoverView::setFooterSymbols() {
    setSymbol(activityMonitorButton, "gauge.with.dots.needle.33percent");
    setSymbol(consoleButton, "terminal");
}

QSize MonitorPopoverView::sizeHint() const {
    return {popoverWidth, column->sizeHint().height()};
}

void MonitorPopoverView::refresh() {
    refreshVisibility();
    refreshValues();
}

void MonitorPopoverView::refreshVisibility() {
    const bool shown[] = {settings.showCPU(), settings.showMemory(), settings.showDisk(),
                          settings.showNetwork(), settings.showTemperature()};
    bool anyShown = false;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        // The divider separates a section from one shown above it.
        sections[i].divider->setVisible(shown[i] && anyShown);
        sections[i].section->setVisible(shown[i]);
        anyShown = anyShown || shown[i];
    }
    footerDivider->setVisible(anyShown);
    fanRow->setVisible(settings.showFan());
}

void MonitorPopoverView::refreshValues() {
    const QColor cpuColor = sensorAccentColor(SensorType::cpu, settings);
    cpuSection->setColor(cpuColor);
    cpuUsage->setText(QString::number(wholeNumber(monitor.cpuUsage() * 100.0)) +
                      QStringLiteral("% usage"));
    cpuCores->setText(QString::number(monitor.coreUsages().size()) + QStringLiteral(" cores"));
    cpuBar->setColor(cpuColor);
    cpuBar->setValue(monitor.cpuUsage());
    coreBars->setColor(cpuColor);
    coreBars->setCores(monitor.coreUsages());
    cpuGraph->setColor(cpuColor);
    cpuGraph->setData(monitor.cpuHistory());
    const auto spokenPercent = [](double fraction) {
        return QString::number(wholeNumber(fraction * 100.0)) + QStringLiteral(" percent");
    };
    cpuSection->setSpokenValue(spokenPercent(monitor.cpuUsage()));

    const QColor memoryColor = sensorAccentColor(SensorType::memory, settings);
    memorySection->setColor(memoryColor);
    memoryAmount->setText(
        QString::asprintf("%.1f / %.1f GB", monitor.memoryUsed(), monitor.memoryTotal()));
    memoryPercent->setText(percentText(monitor.memoryFraction()));
    memoryBar->setColor(memoryColor);
    memoryBar->setValue(monitor.memoryFraction());
    memoryGraph->setColor(memoryColor);
    memoryGraph->setData(monitor.memoryHistory());
    memorySection->setSpokenValue(spokenPercent(monitor.memoryFraction()));

    const QColor diskColor = sensorAccentColor(SensorType::disk, settings);
    diskSection->setColor(diskColor);
    diskAmount->setText(
        QString::asprintf("%.0f / %.0f GB", monitor.diskUsed(), monitor.diskTotal()));
    diskPercent->setText(percentText(monitor.diskFraction()));
    diskSection->setSpokenValue(spokenPercent(monitor.diskFraction()));
    diskBar->setColor(diskColor);
    diskBar->setValue(monitor.diskFraction());

    const QColor networkColor = sensorAccentColor(SensorType::network, settings);
    networkSection->setColor(networkColor);
    downloadArrow->setColor(networkColor);
    downloadRate->setText(popoverRateText(monitor.networkBytesIn()));
    uploadRate->setText(popoverRateText(monitor.networkBytesOut()));
    networkGraph->setColor(networkColor);
    networkGraph->setMaxValue(std::max(rateScaleMaximum(monitor.networkInHistory()),
                                       rateScaleMaximum(monitor.networkOutHistory())));
    networkGraph->setData(monitor.networkInHistory());
    networkSection->setSpokenValue(
        QStringLiteral("down ") + popoverRateText(monitor.networkBytesIn()) +
        QStringLiteral(", up ") + popoverRateText(monitor.networkBytesOut()));
    // Uploads in the network colour turned a sixth round the colour wheel: told apart
    // from downloads, and still of the same family.
    const QColor uploadColor = QColor::fromHsv((networkColor.hsvHue() + 60) % 360,
                                               networkColor.hsvSaturation(), networkColor.value());
    networkGraph->setSecondData(monitor.networkOutHistory(), uploadColor);
    uploadArrow->setColor(uploadColor);

    const QColor temperatureColorSetting = sensorAccentColor(SensorType::cpuTemp, settings);
    temperatureSection->setColor(temperatureColorSetting);
    temperatureValue->setText(temperatureText(monitor.temperature()));
    PopoverStyle::setTemperatureColor(temperatureValue, monitor.temperature(),
                                      temperatureColorSetting);
    PopoverStyle::setFanReading(fanValue, !monitor.fans().empty(),
                                static_cast<double>(monitor.fanSpeed()),
                                sensorAccentColor(SensorType::fan, settings));
    temperatureGraph->setColor(temperatureColorSetting);
    temperatureGraph->setData(monitor.temperatureHistory());
    temperatureSection->setSpokenValue(temperatureValue->text() + QStringLiteral(", fan ") +
                                       fanValue->text());

    intervalLabel->setText(updateIntervalText(settings.updateInterval()));
}

void MonitorPopoverView::changeEvent(QEvent* event) {
    // Colours drawn from the palette follow a change of appearance by themselves;
    // the refresh re-tints the symbols.
    if (event->type() == QEvent::PaletteChange && queuedRefresh) {
        setFooterSymbols();
        queuedRefresh->schedule();
    }
    QWidget::changeEvent(event);
}
