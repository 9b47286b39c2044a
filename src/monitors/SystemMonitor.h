#pragma once

#include "BusiestCore.h"
#include "DetailWatch.h"
#include "SamplingMonitors.h"
#include "SystemSample.h"

#include <QObject>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

/// The one sampling object: samples every source on its own thread every
/// 2.0 s and publishes the readings, with 60-sample histories, on the main thread.
///
/// `objectWillChange` is emitted just before each change of a published field
/// (every assignment, every history append and every history trim). Observers
/// must not read inside it; they schedule a re-read on the main queue.
class SystemMonitor : public QObject {
    Q_OBJECT
public:
    static constexpr int historyLength = 60;
    static constexpr double samplingInterval = 2.0;

    /// Samples this machine and starts the 2.0-second timer.
    explicit SystemMonitor(QObject* parent = nullptr);
    /// Samples the given monitors; `startSampling` false leaves the timer unstarted (tests).
    SystemMonitor(SamplingMonitors monitors, bool startSampling, QObject* parent = nullptr);
    ~SystemMonitor() override;

    double cpuUsage() const { return cpuUsage_; }
    const std::vector<double>& cpuHistory() const { return cpuHistory_; }
    const std::vector<double>& coreUsages() const { return coreUsages_; }
    double memoryUsed() const { return memoryUsed_; }
    double memoryTotal() const { return memoryTotal_; }
    const std::vector<double>& memoryHistory() const { return memoryHistory_; }
    double diskUsed() const { return diskUsed_; }
    double diskTotal() const { return diskTotal_; }
    double diskAvailable() const { return diskAvailable_; }
    double networkBytesIn() const { return networkBytesIn_; }
    double networkBytesOut() const { return networkBytesOut_; }
    const std::vector<double>& networkInHistory() const { return networkInHistory_; }
    const std::vector<double>& networkOutHistory() const { return networkOutHistory_; }
    double temperature() const { return temperature_; }
    double gpuTemperature() const { return gpuTemperature_; }
    const std::vector<double>& temperatureHistory() const { return temperatureHistory_; }
    const std::vector<TemperatureSensor>& allSensors() const { return allSensors_; }
    long long fanSpeed() const { return fanSpeed_; }
    long long fanMaxSpeed() const { return fanMaxSpeed_; }
    const std::vector<FanInfo>& fans() const { return fans_; }
    /// Detail figures, as last read: they are read only while a view watches them.
    const std::vector<ProcessFigure>& busiestProcesses() const { return busiestProcesses_; }
    const std::vector<ProcessFigure>& largestProcesses() const { return largestProcesses_; }
    std::optional<std::uint64_t> memoryLimit() const { return memoryLimit_; }
    const std::vector<MountedVolume>& mountedVolumes() const { return mountedVolumes_; }

    std::optional<BusiestCore> busiestCore() const { return findBusiestCore(coreUsages_); }

    double memoryFraction() const { return memoryTotal_ > 0 ? memoryUsed_ / memoryTotal_ : 0.0; }
    double diskFraction() const { return diskTotal_ > 0 ? diskUsed_ / diskTotal_ : 0.0; }

    /// (Re)starts the repeating timer after one immediate sample.
    void startMonitoring(double intervalSeconds);
    /// Submits one sampling job, unless the previous one is still running. Any thread.
    void updateStats();
    /// Hands every known fan back to automatic control.
    void setAllFansAuto();
    /// Samples `figures` on every tick while the returned watch lives; figures no view
    /// watched before are read at once as well.
    DetailWatch watchDetails(DetailFigures figures);

    /// Reads every source once, in the order CPU, memory, disk, network, thermal,
    /// then the detail figures `wanted`. Runs on the sampling thread.
    static SystemSample collectSample(SamplingMonitors& monitors, DetailFigures wanted = 0);
    /// Assigns the published fields from one sample, in order (main thread).
    void publish(const SystemSample& sample);

    ThermalMonitor& thermalMonitor() { return *monitors->thermalMonitor; }

signals:
    void objectWillChange();
    /// Emitted after a sample has been published.
    void sampled();

private:
    template <typename T> void assign(T& field, const T& value);
    void appendToHistory(std::vector<double>& history, double value);
    void trimHistory(std::vector<double>& history);
    void publishDetails(const DetailSample& details);
    /// Runs `job` on the sampling thread, after the jobs queued before it.
    void runOnSamplingThread(std::function<void()> job);

    double cpuUsage_ = 0.0;
    std::vector<double> cpuHistory_ = std::vector<double>(historyLength, 0.0);
    std::vector<double> coreUsages_;
    double memoryUsed_ = 0.0;
    double memoryTotal_ = 0.0;
    std::vector<double> memoryHistory_ = std::vector<double>(historyLength, 0.0);
    double diskUsed_ = 0.0;
    double diskTotal_ = 0.0;
    double diskAvailable_ = 0.0;
    double networkBytesIn_ = 0.0;
    double networkBytesOut_ = 0.0;
    std::vector<double> networkInHistory_ = std::vector<double>(historyLength, 0.0);
    std::vector<double> networkOutHistory_ = std::vector<double>(historyLength, 0.0);
    double temperature_ = 0.0;
    double gpuTemperature_ = 0.0;
    std::vector<double> temperatureHistory_ = std::vector<double>(historyLength, 0.0);
    std::vector<TemperatureSensor> allSensors_;
    long long fanSpeed_ = 0;
    long long fanMaxSpeed_ = 6000;
    std::vector<FanInfo> fans_;
    std::vector<ProcessFigure> busiestProcesses_;
    std::vector<ProcessFigure> largestProcesses_;
    std::optional<std::uint64_t> memoryLimit_;
    std::vector<MountedVolume> mountedVolumes_;

    // Shared with the job in flight, so a job never outlives what it reads.
    std::shared_ptr<SamplingMonitors> monitors;
    std::shared_ptr<std::atomic<bool>> jobInFlight = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<DetailWants> detailWants = std::make_shared<DetailWants>();
    QPointer<SystemMonitor> self{this};
    // One thread: jobs run one after another and the monitors' previous values need no
    // lock. The tick timer runs there too, so an idle main thread wakes once per tick, for
    // the published sample, rather than once more to start the job.
    QThread samplingThread;
    std::unique_ptr<QObject> samplingContext = std::make_unique<QObject>();
    QTimer* tickTimer = nullptr; // a child of samplingContext; sampling thread only
};
