#include "FakeSysfs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

FakeSysfs::FakeSysfs() {
    std::string pattern = (fs::temp_directory_path() / "fake-sysfs-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    root_ = pattern;
    makeDirectory("sys/class/hwmon");
    makeDirectory("sys/class/thermal");
}

FakeSysfs::~FakeSysfs() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void FakeSysfs::write(const std::string& path, const std::string& content) const {
    const fs::path full = fs::path(root_) / path;
    fs::create_directories(full.parent_path());
    std::ofstream(full, std::ios::binary | std::ios::trunc) << content;
}

std::string FakeSysfs::read(const std::string& path) const {
    std::ifstream in(fs::path(root_) / path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void FakeSysfs::makeDirectory(const std::string& path) const {
    fs::create_directories(fs::path(root_) / path);
}

void FakeSysfs::link(const std::string& target, const std::string& path) const {
    const fs::path full = fs::path(root_) / path;
    fs::create_directories(full.parent_path());
    fs::create_directory_symlink(target, full);
}

std::string FakeSysfs::addHwmon(int n, const std::string& devicePath, const Attributes& attributes,
                                bool onDevice) {
    const std::string hwmon = "hwmon" + std::to_string(n);
    const std::string device = "sys/devices/" + devicePath;
    const std::string chip = device + "/hwmon/" + hwmon;
    makeDirectory(chip);
    link("../../../" + fs::path(devicePath).filename().string(), chip + "/device");
    link("../../devices/" + devicePath + "/hwmon/" + hwmon, "sys/class/hwmon/" + hwmon);
    for (const auto& [name, content] : attributes)
        write((onDevice ? device : chip) + "/" + name, content + "\n");
    return chip;
}

std::string FakeSysfs::addVirtualHwmon(int n, const Attributes& attributes) {
    const std::string hwmon = "hwmon" + std::to_string(n);
    const std::string chip = "sys/devices/virtual/hwmon/" + hwmon;
    makeDirectory(chip);
    link("../../devices/virtual/hwmon/" + hwmon, "sys/class/hwmon/" + hwmon);
    for (const auto& [name, content] : attributes)
        write(chip + "/" + name, content + "\n");
    return chip;
}

void FakeSysfs::addThermalZone(int n, const std::string& type, long long milliCelsius,
                               long long criticalMilliCelsius, int hwmonN) {
    const std::string name = "thermal_zone" + std::to_string(n);
    const std::string zone = "sys/devices/virtual/thermal/" + name;
    write(zone + "/type", type + "\n");
    write(zone + "/temp", std::to_string(milliCelsius) + "\n");
    write(zone + "/trip_point_0_type", "passive\n");
    write(zone + "/trip_point_0_temp", "80000\n");
    if (criticalMilliCelsius != 0) {
        write(zone + "/trip_point_1_type", "critical\n");
        write(zone + "/trip_point_1_temp", std::to_string(criticalMilliCelsius) + "\n");
    }
    link("../../devices/virtual/thermal/" + name, "sys/class/thermal/" + name);
    if (hwmonN >= 0) {
        std::string chipName = type;
        std::replace(chipName.begin(), chipName.end(), '-', '_');
        addHwmon(hwmonN, "virtual/thermal/" + name,
                 {{"name", chipName}, {"temp1_input", std::to_string(milliCelsius)}});
    }
}

long long firstInteger(const std::string& content) {
    try {
        return std::stoll(content.substr(0, content.find('\n')));
    } catch (const std::exception&) {
        return -1;
    }
}
