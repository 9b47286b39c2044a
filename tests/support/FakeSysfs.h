#pragma once

#include "TempDir.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// A throw-away sysfs laid out like the kernel's: chips live under sys/devices/...,
/// and sys/class/hwmon/hwmonN and sys/class/thermal/thermal_zoneN are relative symlinks.
class FakeSysfs : public TempDir {
public:
    /// Attribute files of a chip: {"file", "content"} pairs or "file=content" strings.
    struct Attributes : std::map<std::string, std::string> {
        Attributes(std::initializer_list<value_type> pairs) : map(pairs) {}
        Attributes(std::initializer_list<const char*> lines);
    };

    FakeSysfs();
    std::string root() const { return str(); }

    /// A hwmon chip of device `devicePath` (under sys/devices), registered as hwmonN.
    /// Returns the chip directory. With `onDevice`, the attributes sit on the device
    /// (older drivers, applesmc) and the hwmon directory only links to it.
    std::string addHwmon(int n, const std::string& devicePath, const Attributes& attributes,
                         bool onDevice = false) const;
    void addThermalZone(int n, const std::string& type, long long milliCelsius) const;
};

/// The first line of a value file as an integer, -1 when unreadable.
long long firstInteger(const std::string& content);

/// The files of a directory that see inotify `events`, in order, repeats in a row merged.
class FileWatch {
public:
    FileWatch(const std::string& dir, std::uint32_t events);
    ~FileWatch();
    std::vector<std::string> names();

private:
    int fd_;
    std::vector<std::string> names_;
};
