#include "FakeSysfs.h"

#include <stdexcept>
#include <sys/inotify.h>
#include <unistd.h>

FakeSysfs::Attributes::Attributes(std::initializer_list<const char*> lines) {
    for (const std::string line : lines) {
        const auto equals = line.find('=');
        emplace(line.substr(0, equals), line.substr(equals + 1));
    }
}

FakeSysfs::FakeSysfs() {
    makeDirectory("sys/class/hwmon");
    makeDirectory("sys/class/thermal");
}

std::string FakeSysfs::addHwmon(int n, const std::string& devicePath, const Attributes& attributes,
                                bool onDevice) const {
    const std::string hwmon = "hwmon" + std::to_string(n);
    const std::string device = "sys/devices/" + devicePath;
    const std::string chip = device + "/hwmon/" + hwmon;
    makeDirectory(chip);
    link("../../../" + devicePath.substr(devicePath.rfind('/') + 1), chip + "/device");
    link("../../devices/" + devicePath + "/hwmon/" + hwmon, "sys/class/hwmon/" + hwmon);
    for (const auto& [name, content] : attributes)
        write((onDevice ? device : chip) + "/" + name, content + "\n");
    return chip;
}

void FakeSysfs::addThermalZone(int n, const std::string& type, long long milliCelsius) const {
    const std::string name = "thermal_zone" + std::to_string(n);
    write("sys/devices/virtual/thermal/" + name + "/type", type + "\n");
    write("sys/devices/virtual/thermal/" + name + "/temp", std::to_string(milliCelsius) + "\n");
    link("../../devices/virtual/thermal/" + name, "sys/class/thermal/" + name);
}

long long firstInteger(const std::string& content) {
    try {
        return std::stoll(content.substr(0, content.find('\n')));
    } catch (const std::exception&) {
        return -1;
    }
}

FileWatch::FileWatch(const std::string& dir, std::uint32_t events)
    : fd_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (fd_ < 0 || ::inotify_add_watch(fd_, dir.c_str(), events) < 0)
        throw std::runtime_error("cannot watch " + dir);
}

FileWatch::~FileWatch() {
    ::close(fd_);
}

std::vector<std::string> FileWatch::names() {
    char buffer[65536];
    const ssize_t count = ::read(fd_, buffer, sizeof buffer);
    for (ssize_t offset = 0; offset < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
        const bool file = event->len > 0 && (event->mask & IN_ISDIR) == 0;
        if (file && (names_.empty() || names_.back() != event->name))
            names_.emplace_back(event->name);
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return names_;
}
