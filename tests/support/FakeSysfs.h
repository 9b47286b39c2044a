#pragma once

#include <map>
#include <string>

/// A throw-away sysfs laid out like the kernel's: chips live under sys/devices/...,
/// and sys/class/hwmon/hwmonN and sys/class/thermal/thermal_zoneN are relative symlinks.
class FakeSysfs {
public:
    using Attributes = std::map<std::string, std::string>; // file name -> content

    FakeSysfs();
    ~FakeSysfs();
    FakeSysfs(const FakeSysfs&) = delete;
    FakeSysfs& operator=(const FakeSysfs&) = delete;

    const std::string& root() const { return root_; }

    /// A hwmon chip of device `devicePath` (under sys/devices), registered as hwmonN.
    /// Returns the chip directory. With `onDevice`, the attributes sit on the device
    /// (older drivers, applesmc) and the hwmon directory only links to it.
    std::string addHwmon(int n, const std::string& devicePath, const Attributes& attributes,
                         bool onDevice = false);

    /// A chip without a device link, as old kernels registered thermal-zone mirrors.
    std::string addVirtualHwmon(int n, const Attributes& attributes);

    /// thermal_zoneN of `type`; with `hwmonN` >= 0 the kernel's hwmon mirror of it too.
    void addThermalZone(int n, const std::string& type, long long milliCelsius,
                        long long criticalMilliCelsius = 0, int hwmonN = -1);

    /// Writes `content` to `path` relative to the root, making directories.
    void write(const std::string& path, const std::string& content) const;
    std::string read(const std::string& path) const;
    void makeDirectory(const std::string& path) const;
    void link(const std::string& target, const std::string& path) const;

private:
    std::string root_;
};

/// The first line of a value file as an integer, -1 when unreadable.
long long firstInteger(const std::string& content);
