#include "SystemMonitor.h"

#include "FanFigures.h"
#include "ThermalEstimate.h"

#include <QPointer>

#include <string>
#include <utility>

namespace {

// Runs `publish` with what the sampling queue read, queued onto the monitor's thread;
// dropped by Qt if the monitor is gone.
template <typename Readings>
void handBack(const QPointer<SystemMonitor>& self, void (SystemMonitor::*publish)(const Readings&),
              Readings readings) {
    QMetaObject::invokeMethod(
        self.data(),
        [self, publish, readings = std::move(readings)] {
            if (self)
                (self.data()->*publish)(readings);
        },
        Qt::QueuedConnection);
}

} // namespace

SystemMonitor::SystemMonitor(QObject* parent)
    : SystemMonitor(SamplingMonitors::forThisMachine(), true, parent) {}

SystemMonitor::SystemMonitor(SamplingMonitors sources, bool startSampling, QObject* parent)
    : QObject(parent), monitors(std::make_shared<SamplingMonitors>(std::move(sources))) {
    samplingThread.setObjectName(QStringLiteral("Vorlune sampling"));
    samplingContext->moveToThread(&samplingThread);
    samplingThread.start();
    if (startSampling)
        startMonitoring(samplingInterval);
}

SystemMonitor::~SystemMonitor() {
    // Waits for the job in flight; its queued publish dies with this object.
    QMetaObject::invokeMethod(
        samplingContext.get(), [this] { delete std::exchange(tickTimer, nullptr); },
        Qt::BlockingQueuedConnection);
    if (monitors->thermalMonitor)
        monitors->thermalMonitor->stopDaemon();
    samplingThread.quit();
    samplingThread.wait();
}

void SystemMonitor::runOnSamplingThread(std::function<void()> job) {
    QMetaObject::invokeMethod(samplingContext.get(), std::move(job), Qt::QueuedConnection);
}

void SystemMonitor::startMonitoring(double intervalSeconds) {
    updateStats();
    const int milliseconds = static_cast<int>(intervalSeconds * 1000.0);
    runOnSamplingThread([this, milliseconds] {
        delete tickTimer;
        tickTimer = new QTimer(samplingContext.get());
        tickTimer->setTimerType(Qt::PreciseTimer);
        tickTimer->setInterval(milliseconds);
        connect(tickTimer, &QTimer::timeout, samplingContext.get(), [this] { updateStats(); });
        tickTimer->start();
    });
}

void SystemMonitor::updateStats() {
    // A slow source must not build a backlog: a tick that finds the previous
    // job still running is skipped.
    if (jobInFlight->exchange(true))
        return;
    auto sources = monitors;
    auto inFlight = jobInFlight;
    const DetailFigures wanted = detailWants->figures();
    runOnSamplingThread([self = self, sources, inFlight, wanted] {
        SystemSample sample = collectSample(*sources, wanted);
        inFlight->store(false);
        handBack(self, &SystemMonitor::publish, std::move(sample));
    });
}

DetailWatch SystemMonitor::watchDetails(DetailFigures figures) {
    const DetailFigures fresh = figures & ~detailWants->figures();
    DetailWatch watch(detailWants, figures);
    if (!fresh || !monitors->detailSampler)
        return watch;
    // Read on the sampling thread, after any job in flight, so the sampler stays single-threaded.
    auto sources = monitors;
    runOnSamplingThread([self = self, sources, fresh] {
        handBack(self, &SystemMonitor::publishDetails, sources->detailSampler->sample(fresh));
    });
    return watch;
}

SystemSample SystemMonitor::collectSample(SamplingMonitors& monitors, DetailFigures wanted) {
    SystemSample sample;
    CpuUsage cpu = monitors.cpuMonitor->getUsage();
    sample.cpuUsage = cpu.total;
    sample.coreUsages = std::move(cpu.perCore);
    sample.memory = monitors.memoryMonitor->getMemoryUsage();
    sample.disk = monitors.diskMonitor->getDiskUsage();
    sample.network = monitors.networkMonitor->getThroughput();
    const auto& helperPath = monitors.thermalMonitor->helperPath();
    if (helperPath) {
        sample.thermal = monitors.thermalMonitor->readResident(*helperPath);
    } else {
        const auto state = monitors.thermalStateSource ? monitors.thermalStateSource->thermalState()
                                                       : std::nullopt;
        sample.thermal = estimatedThermalReadings(state);
    }
    // A fan daemon that died is noticed within a tick, and its fans are handed back.
    monitors.thermalMonitor->checkDaemon();
    if (monitors.detailSampler) {
        monitors.detailSampler->keepOnly(wanted);
        sample.details = monitors.detailSampler->sample(wanted);
    }
    return sample;
}

template <typename T> void SystemMonitor::assign(T& field, const T& value) {
    emit objectWillChange();
    field = value;
}

void SystemMonitor::appendToHistory(std::vector<double>& history, double value) {
    emit objectWillChange();
    history.push_back(value);
}

void SystemMonitor::trimHistory(std::vector<double>& history) {
    if (history.size() <= static_cast<std::size_t>(historyLength))
        return;
    emit objectWillChange();
    history.erase(history.begin());
}

void SystemMonitor::publish(const SystemSample& sample) {
    assign(cpuUsage_, sample.cpuUsage);
    assign(coreUsages_, sample.coreUsages);
    appendToHistory(cpuHistory_, sample.cpuUsage);
    trimHistory(cpuHistory_);

    assign(memoryUsed_, sample.memory.used);
    assign(memoryTotal_, sample.memory.total);
    appendToHistory(memoryHistory_,
                    sample.memory.total > 0 ? sample.memory.used / sample.memory.total : 0.0);
    trimHistory(memoryHistory_);

    assign(diskUsed_, sample.disk.used);
    assign(diskTotal_, sample.disk.total);
    assign(diskAvailable_, sample.disk.available);

    assign(networkBytesIn_, sample.network.bytesIn);
    assign(networkBytesOut_, sample.network.bytesOut);
    appendToHistory(networkInHistory_, sample.network.bytesIn);
    appendToHistory(networkOutHistory_, sample.network.bytesOut);
    trimHistory(networkInHistory_);
    trimHistory(networkOutHistory_);

    assign(temperature_, sample.thermal.cpuTemp);
    assign(gpuTemperature_, sample.thermal.gpuTemp);
    assign(allSensors_, sample.thermal.sensors);
    appendToHistory(temperatureHistory_, sample.thermal.cpuTemp);
    trimHistory(temperatureHistory_);

    assign(fanSpeed_, firstFanSpeed(sample.thermal));
    assign(fanMaxSpeed_, firstFanMaxSpeed(sample.thermal));
    assign(fans_, sample.thermal.fans);
    publishDetails(sample.details);
    emit sampled();
}

void SystemMonitor::publishDetails(const DetailSample& details) {
    const DetailFigures figures = details.figures;
    if (figures & DetailFigure::busiestProcesses)
        assign(busiestProcesses_, details.busiestProcesses);
    if (figures & DetailFigure::largestProcesses)
        assign(largestProcesses_, details.largestProcesses);
    if (figures & DetailFigure::memoryLimit)
        assign(memoryLimit_, details.memoryLimit);
    if (figures & DetailFigure::mountedVolumes)
        assign(mountedVolumes_, details.mountedVolumes);
}

void SystemMonitor::setAllFansAuto() {
    for (const FanInfo& fan : fans_) {
        if (!fan.key.empty())
            monitors->thermalMonitor->sendCommand("fan-auto " + fan.key);
    }
}
