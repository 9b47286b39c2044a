#pragma once

#include "ThermalReadings.h"
#include "ThermalState.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

/// The application's side of the link to smc_helper: locating the one-shot
/// helper, reading it, and the privileged fan-control daemon.
class ThermalMonitor {
public:
    static constexpr const char* defaultInstalledHelperPath = "/usr/local/bin/vorlune_smc_helper";
    static constexpr const char* defaultElevationProgram = "/usr/bin/pkexec";

    explicit ThermalMonitor(std::string installedHelperPath = defaultInstalledHelperPath,
                            std::string elevationProgram = defaultElevationProgram);
    ~ThermalMonitor();
    ThermalMonitor(const ThermalMonitor&) = delete;
    ThermalMonitor& operator=(const ThermalMonitor&) = delete;

    /// The one-shot helper found at construction, if any.
    const std::optional<std::string>& helperPath() const { return helperPath_; }

    static std::optional<std::string> locateHelper();
    bool isHelperInstalled() const;
    ThermalReadings readAll(const std::string& path) const;

    bool startDaemon();
    bool sendCommand(std::string_view command);
    bool setFanSpeed(long long fanId, double rpm);
    bool setAllFans(const std::map<long long, double>& rpmByFan);
    void stopDaemon();

    const std::string& installedHelperPath() const { return installedHelperPath_; }
    const std::string& elevationProgram() const { return elevationProgram_; }

private:
    std::string installedHelperPath_;
    std::string elevationProgram_;
    std::optional<std::string> helperPath_;

    struct Daemon;
    std::unique_ptr<Daemon> daemon_; // guarded by daemonLock
    std::mutex daemonLock;
};
