#pragma once

#include "CommandLineReader.h"
#include "Failsafe.h"
#include "FanGuard.h"
#include "SensorCollector.h"

#include <string>
#include <string_view>
#include <vector>

/// A CPU temperature the failsafe watches, through a descriptor opened before the
/// daemon gave up its privileges.
struct WatchedSensor {
    int fd = -1;
    Failsafe::Limits limits;
};

/// Opens every CPU temperature of `readings` for the failsafe.
std::vector<WatchedSensor> openCpuSensors(const SensorReadings& readings);

/// The fan-control daemon: one command per line on its input, nothing on its output
/// after the ready line, refusals on standard error. Whatever ends it (quit, end of
/// input, SIGTERM/SIGINT/SIGHUP/SIGQUIT) hands every fan back first.
class FanDaemon {
public:
    FanDaemon(FanGuard guard, std::vector<WatchedSensor> cpuSensors);
    ~FanDaemon();
    FanDaemon(const FanDaemon&) = delete;
    FanDaemon& operator=(const FanDaemon&) = delete;

    /// Prints "ready" on `output`, then serves `input`. Returns the exit status.
    int run(int input, int output);

private:
    bool handleLine(std::string_view line); // false once the daemon should end
    void setFan(std::size_t id, long long rpm);
    void checkTemperatures();
    bool restoreFan(std::size_t id);
    bool restoreAll();

    FanGuard guard_;
    std::vector<WatchedSensor> cpuSensors_;
    Failsafe failsafe_;
    CommandLineReader reader_;
    bool writeFailed_ = false;
};
