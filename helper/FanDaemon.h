#pragma once

#include "CommandLineReader.h"
#include "DaemonRunDir.h"
#include "Failsafe.h"
#include "FanGuard.h"
#include "SensorCollector.h"

#include <string>
#include <string_view>
#include <vector>

/// A temperature the failsafe watches, through a descriptor opened before the
/// daemon gave up its privileges.
struct WatchedSensor {
    int fd = -1;
    Failsafe::Limits limits;
    bool cpu = false;
};

/// Opens the temperatures the failsafe watches: the CPU's when there are any (the part
/// that overheats first), else every sensor, so a machine whose CPU reports nothing is
/// still watched. Empty when nothing can be read: manual control is then refused.
std::vector<WatchedSensor> openWatchedSensors(const SensorReadings& readings);

/// The fan-control daemon: one command per line (see CommandParser.h) on its input, nothing on its
/// output after the ready line, refusals on standard error. Whatever ends it (quit, end of input,
/// SIGTERM/SIGINT/SIGHUP/SIGQUIT) hands every fan back first and then empties the state file; a
/// SIGKILL leaves the file for the next daemon to restore from.
class FanDaemon {
public:
    FanDaemon(FanGuard guard, std::vector<WatchedSensor> watched, DaemonRunDir runDir);
    ~FanDaemon();
    FanDaemon(const FanDaemon&) = delete;
    FanDaemon& operator=(const FanDaemon&) = delete;

    /// Prints "ready" on `output`, then serves `input`. Returns the exit status.
    int run(int input, int output);

private:
    bool handleLine(std::string_view line); // false once the daemon should end
    void setFan(std::size_t id, long long value, bool duty);
    void checkTemperatures();
    std::string watchedName() const;
    bool restoreFan(std::size_t id);
    bool restoreAll();
    int finish(int status);

    FanGuard guard_;
    std::vector<WatchedSensor> watched_;
    DaemonRunDir runDir_;
    Failsafe failsafe_;
    CommandLineReader reader_;
    bool writeFailed_ = false;
};
