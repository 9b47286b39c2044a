#pragma once

#include "FakeSysfs.h"

// Machines for the helper's tests; every chip sits at the device path its driver uses.

/// coretemp (Core 0 critical at 90 °C) + nct6798 board (fans 0 and 1 on pwm1/pwm2, fan 2
/// without control), an nvme drive, an acpitz zone mirrored by hwmon and an x86_pkg_temp zone.
void buildIntelDesktop(const FakeSysfs& sysfs);
constexpr const char* intelBoardChip = "sys/devices/platform/nct6775.656/hwmon/hwmon1";
constexpr const char* intelCoretempChip = "sys/devices/platform/coretemp.0/hwmon/hwmon2";
/// k10temp + nct6799 + a runtime-active amdgpu as hwmon0 and a suspended iGPU.
void buildAmdDesktop(const FakeSysfs& sysfs);
/// applesmc with its attributes on the platform device, two fans with output/manual.
void buildMacBook(const FakeSysfs& sysfs);
constexpr const char* macSmcDevice = "sys/devices/platform/applesmc.768";
