#pragma once

#include "SysfsTree.h"

#include <optional>
#include <string>
#include <vector>

/// How a fan's speed is set: a duty cycle (pwmN with pwmN_enable), an RPM output with a
/// manual switch (applesmc fanN_output/fanN_manual), or a closed-loop RPM target.
enum class FanControlKind { none, pwm, rpmOutput, rpmTarget };

struct FanControlPaths {
    FanControlKind kind = FanControlKind::none;
    std::string modePath;  ///< pwmN_enable or fanN_manual; empty when the chip has none
    std::string valuePath; ///< pwmN, fanN_output or fanN_target
};

struct HwmonTemperature {
    int index = 0;
    std::string label; ///< tempN_label, empty when absent
    long long milliCelsius = 0;
    std::optional<long long> critMilliCelsius;
    std::string inputPath; ///< empty unless paths were asked for
};

struct HwmonFan {
    int index = 0;
    long long rpm = 0;
    // Most chips report none of these; an absent figure stays absent, never a guess.
    std::optional<long long> minRpm;
    std::optional<long long> maxRpm;
    std::optional<long long> targetRpm;
    FanControlPaths control; ///< kind none unless paths were asked for
    std::string inputPath;   ///< fanN_input, when paths were asked for
    std::string targetPath;  ///< what targetRpm was read from, when paths were asked for
};

// What a reading may be; anything else is a broken sensor, not a value.
constexpr long long lowestMilliCelsius = -273150;
constexpr long long highestMilliCelsius = 1000000;
constexpr long long highestRpm = 1000000;

struct HwmonChip {
    std::string name;
    std::string deviceName; ///< last component of the device path, "virtual" without one
    std::string devicePath; ///< as on a real machine; stable across boots, unlike hwmonN
    bool hasDevice = false;
    /// The device's power/runtime_status for a GPU, when paths were asked for: what
    /// says whether reading it would wake it.
    std::string runtimeStatusPath;
    std::vector<HwmonTemperature> temperatures;
    std::vector<HwmonFan> fans;
};

struct HwmonScanOptions {
    bool readCriticalTemperatures = false;
    bool recordPaths = false; ///< fill inputPath and the fan control paths
};

/// Every chip under /sys/class/hwmon, except GPUs that are runtime-suspended: reading
/// one would wake a powered-down laptop GPU on every sample.
std::vector<HwmonChip> scanHwmon(const SysfsTree& tree, const HwmonScanOptions& options);
