#include "FanDetailContent.h"

#include "ColoredProgressBar.h"
#include "FanControlQueue.h"
#include "FanControlText.h"
#include "FanReadoutRow.h"
#include "FanSliderRow.h"
#include "PopoverStyle.h"
#include "QueuedRefresh.h"
#include "SensorAccent.h"
#include "SymbolLabel.h"
#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"
#include "tray/Symbols.h"
#include "views/menubar/MenuBarColor.h"
#include "views/settings/ToggleSwitch.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QThreadPool>
#include <QVBoxLayout>

#include <thread>

namespace {

const QString installFailedText = QStringLiteral("Installation failed or was cancelled.");

// Lets the daemon settle after its ready line before the first speeds arrive.
constexpr std::chrono::milliseconds pauseAfterDaemonStart{500};

double percentOf(const std::map<long long, double>& percentages, long long fanId) {
    const auto entry = percentages.find(fanId);
    return entry == percentages.end() ? 0.0 : entry->second;
}

} // namespace

FanDetailContent::FanDetailContent(SystemMonitor& monitor, AppSettings& settings, QWidget* parent)
    : QWidget(parent), monitor(monitor), settings(settings),
      fanPercentages_(settings.fanPercentages()) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(setupCard = makeSetupCard());
    column->addWidget(controls = makeControls());

    auto* queued = new QueuedRefresh([this] { refresh(); }, this);
    queued->watch(&monitor, &SystemMonitor::objectWillChange);
    queued->watch(&settings, &AppSettings::objectWillChange);
    refresh();
}

QWidget* FanDetailContent::makeSetupCard() {
    auto* card = new QFrame(this);
    card->setObjectName(QStringLiteral("setupCard"));
    // Rounded like every other card, in the palette's own colours.
    card->setStyleSheet(QStringLiteral("QFrame#setupCard { border: 1px solid palette(mid); "
                                       "border-radius: 8px; }"));
    auto* column = new QVBoxLayout(card);
    column->setContentsMargins(10, 10, 10, 10);
    column->setSpacing(6);

    setupTitle = PopoverStyle::label(QStringLiteral("Fan control requires a one-time setup."), 10,
                                     QFont::Medium, card);
    setupTitle->setWordWrap(true);
    auto* explanation = PopoverStyle::secondaryLabel(
        QStringLiteral("Installs the sensor helper to /usr/local/bin with administrator rights. "
                       "Required once."),
        card);
    explanation->setWordWrap(true);

    enableButton = new QPushButton(card);
    enableButton->setObjectName(QStringLiteral("enableButton"));
    installProgress = new QProgressBar(card);
    installProgress->setObjectName(QStringLiteral("installProgress"));
    installProgress->setRange(0, 0);
    installProgress->setTextVisible(false);
    installProgress->setFixedSize(40, 6);
    auto* buttonLine = new QHBoxLayout;
    buttonLine->setSpacing(8);
    buttonLine->addWidget(enableButton);
    buttonLine->addWidget(installProgress);
    buttonLine->addStretch();
    connect(enableButton, &QPushButton::clicked, this, &FanDetailContent::enableFanControl);

    failureLine = PopoverStyle::label(installFailedText, 9, QFont::Normal, card);
    failureLine->setObjectName(QStringLiteral("installFailed"));
    PopoverStyle::setTextColor(failureLine, MenuBarColors::hot);

    column->addWidget(setupTitle);
    column->addWidget(explanation);
    column->addLayout(buttonLine);
    column->addWidget(failureLine);
    return card;
}

QWidget* FanDetailContent::makeControls() {
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("fanControls"));
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);

    auto* switchLine = new QHBoxLayout;
    switchLine->setSpacing(6);
    switchLine->addWidget(new SymbolLabel(QStringLiteral("wrench.and.screwdriver"), 14, {}, panel));
    switchLine->addWidget(
        PopoverStyle::label(QStringLiteral("Manual Fan Override"), 10, QFont::Medium, panel));
    switchLine->addStretch();
    manualSwitch = new ToggleSwitch(panel);
    manualSwitch->setObjectName(QStringLiteral("manualSwitch"));
    manualSwitch->setAccessibleName(QStringLiteral("Manual Fan Override"));
    switchLine->addWidget(manualSwitch);
    connect(manualSwitch, &ToggleSwitch::toggled, this, &FanDetailContent::manualSwitchToggled);

    auto* statusLine = new QHBoxLayout;
    statusLine->setSpacing(6);
    statusLine->addWidget(PopoverStyle::secondaryLabel(QStringLiteral("Status:"), panel));
    status = PopoverStyle::label({}, 9, QFont::Medium, panel);
    status->setObjectName(QStringLiteral("status"));
    statusBar = new ColoredProgressBar(6, panel);
    statusBar->setObjectName(QStringLiteral("statusBar"));
    statusLine->addWidget(status);
    statusLine->addWidget(statusBar, 1);
    statusLine->addStretch();

    warning = PopoverStyle::label(
        QStringLiteral("Warning: Manual override bypasses automatic thermal management."), 9,
        QFont::Normal, panel);
    warning->setObjectName(QStringLiteral("warning"));
    warning->setWordWrap(true);
    PopoverStyle::setTextColor(warning, MenuBarColors::warm);

    // Why manual control is not on although it was asked for; kept by the thermal
    // monitor, so it is still there when the popover is opened again.
    problemLine = PopoverStyle::label({}, 9, QFont::Normal, panel);
    problemLine->setObjectName(QStringLiteral("daemonProblem"));
    problemLine->setWordWrap(true);
    PopoverStyle::setTextColor(problemLine, MenuBarColors::hot);

    rowsColumn = new QVBoxLayout;
    rowsColumn->setSpacing(6);

    column->addLayout(switchLine);
    column->addLayout(statusLine);
    column->addWidget(problemLine);
    column->addWidget(warning);
    column->addLayout(rowsColumn);
    return panel;
}

void FanDetailContent::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Setting the switch here must not start or stop anything: the handler sees
    // isSyncing and returns until the queued reset has run.
    isSyncing_ = true;
    isManualMode_ = monitor.thermalMonitor().isDaemonRunning();
    manualSwitch->setChecked(isManualMode_);
    QMetaObject::invokeMethod(
        this, [this] { isSyncing_ = false; }, Qt::QueuedConnection);
    refresh();
}

void FanDetailContent::refresh() {
    sensorColor = sensorAccentColor(SensorType::fan, settings);
    // An outdated copy may not speak this version's commands: it is set up again first.
    const ThermalMonitor& thermal = monitor.thermalMonitor();
    const bool outdated = thermal.isHelperInstalled() && thermal.isHelperOutdated();
    setupTitle->setText(outdated ? QStringLiteral("The sensor helper is from another version "
                                                  "of Vorlune. Reinstall it to control fans.")
                                 : QStringLiteral("Fan control requires a one-time setup."));
    helperOutdated = outdated;
    // While manual control runs, its switch stays to hand the fans back.
    const bool installed = thermal.isHelperInstalled() && (!outdated || isManualMode_);
    setupCard->setVisible(!installed);
    controls->setVisible(installed);
    if (installed)
        refreshControls();
    else
        refreshSetupCard();
}

void FanDetailContent::refreshSetupCard() {
    enableButton->setEnabled(!isInstalling_);
    if (isInstalling_) {
        enableButton->setIcon(QIcon());
        enableButton->setText(QStringLiteral("Installing..."));
    } else {
        enableButton->setIcon(symbolIcon("lock.shield", palette().color(QPalette::ButtonText)));
        enableButton->setText(helperOutdated ? QStringLiteral("Reinstall Helper")
                                             : QStringLiteral("Enable Fan Control"));
    }
    installProgress->setVisible(isInstalling_);
    failureLine->setVisible(installFailed_);
}

void FanDetailContent::refreshControls() {
    ThermalMonitor& thermal = monitor.thermalMonitor();
    // A daemon that died while manual control was on: the switch follows what is true.
    if (isManualMode_ && !isInstalling_ && !thermal.isDaemonRunning())
        isManualMode_ = false;
    const QString problem = isManualMode_ ? QString() : daemonProblemText(thermal.daemonProblem());
    problemLine->setText(problem);
    problemLine->setVisible(!problem.isEmpty());
    {
        const QSignalBlocker quiet(manualSwitch);
        manualSwitch->setChecked(isManualMode_);
    }
    manualSwitch->setEnabled(!isInstalling_);

    const FanStatus shown = fanStatus(isManualMode_, monitor.fanSpeed(), monitor.fanMaxSpeed());
    status->setText(shown.text);
    PopoverStyle::setTextColor(status, shown.color);
    statusBar->setVisible(shown.load.has_value());
    statusBar->setValue(shown.load.value_or(0.0));
    statusBar->setColor(shown.color);

    warning->setVisible(isManualMode_);
    refreshRows();
}

void FanDetailContent::refreshRows() {
    const std::vector<FanInfo>& fans = monitor.fans();
    const std::size_t readouts = isManualMode_ ? 0 : fans.size();
    const std::size_t sliders = isManualMode_ ? fans.size() : 0;
    while (readoutRows.size() < readouts) {
        readoutRows.push_back(new FanReadoutRow(controls));
        rowsColumn->addWidget(readoutRows.back());
    }
    while (sliderRows.size() < sliders) {
        auto* row = new FanSliderRow(controls);
        connect(row, &FanSliderRow::percentChanged, this, &FanDetailContent::keepPercent);
        connect(row, &FanSliderRow::driveDue, this, &FanDetailContent::sendDrive);
        sliderRows.push_back(row);
        rowsColumn->addWidget(row);
    }
    for (std::size_t i = 0; i < readoutRows.size(); ++i) {
        readoutRows[i]->setVisible(i < readouts);
        if (i < readouts)
            readoutRows[i]->setFan(fans[i], sensorColor);
    }
    for (std::size_t i = 0; i < sliderRows.size(); ++i) {
        sliderRows[i]->setVisible(i < sliders);
        if (i < sliders)
            sliderRows[i]->setFan(fans[i], percentOf(fanPercentages_, fans[i].id));
    }
}

void FanDetailContent::enableFanControl() {
    if (isInstalling_)
        return;
    isInstalling_ = true;
    refresh();
    ThermalMonitor* thermal = &monitor.thermalMonitor();
    runFanControlWork(
        monitor, this, [thermal] { return thermal->installHelper(); },
        [this](bool installed) {
            isInstalling_ = false;
            if (!installed) {
                failureLine->setText(installFailedText);
                installFailed_ = true;
            }
            refresh();
        });
}

void FanDetailContent::manualSwitchToggled(bool on) {
    if (isSyncing_)
        return;
    if (isInstalling_) {
        const QSignalBlocker quiet(manualSwitch);
        manualSwitch->setChecked(isManualMode_);
        return;
    }
    isManualMode_ = on;
    if (on)
        switchManualOn();
    else
        switchManualOff();
    refresh();
}

void FanDetailContent::switchManualOn() {
    isInstalling_ = true;
    const std::vector<FanDrive> drives = fanDrives(monitor.fans(), fanPercentages_);
    ThermalMonitor* thermal = &monitor.thermalMonitor();
    runFanControlWork(
        monitor, this,
        [thermal, drives] {
            if (!thermal->startDaemon())
                return false;
            std::this_thread::sleep_for(pauseAfterDaemonStart);
            thermal->driveFans(drives);
            return true;
        },
        [this](bool started) {
            isInstalling_ = false;
            if (!started)
                isManualMode_ = false; // the problem line says why
            refresh();
        });
}

void FanDetailContent::switchManualOff() {
    settings.setFanPercentages(fanPercentages_);
    // Stopping waits for the daemon to hand the fans back: never on the main thread. The
    // fans are taken here, since the published list changes on this thread.
    std::vector<std::string> keys;
    for (const FanInfo& fan : monitor.fans()) {
        if (!fan.key.empty())
            keys.push_back(fan.key);
    }
    ThermalMonitor* thermal = &monitor.thermalMonitor();
    fanControlQueue(monitor).start([thermal, keys] {
        for (const std::string& key : keys)
            thermal->sendCommand("fan-auto " + key);
        thermal->stopDaemon();
    });
}

void FanDetailContent::keepPercent(long long fanId, double percent) {
    fanPercentages_[fanId] = percent;
    // Saved as it moves, so a crash, a killed app or a closed popover keeps it.
    settings.setFanPercentages(fanPercentages_);
}

void FanDetailContent::sendDrive(const FanDrive& drive) {
    if (!isManualMode_)
        return;
    ThermalMonitor* thermal = &monitor.thermalMonitor();
    fanControlQueue(monitor).start([thermal, drive] { thermal->driveFans({drive}); });
}
