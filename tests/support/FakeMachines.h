#pragma once

#include "FakeSysfs.h"

// Fake machines shared by the one-shot and daemon tests. The device path of every
// chip is what its driver uses on real hardware.

/// coretemp + nct6798 board (fans 0 and 1 on pwm1/pwm2, fan 2 without control),
/// an nvme drive, an acpitz zone mirrored by hwmon and an x86_pkg_temp zone.
void buildIntelDesktop(FakeSysfs& sysfs);
constexpr const char* intelBoardChip = "sys/devices/platform/nct6775.656/hwmon/hwmon1";
constexpr const char* intelCoretempChip = "sys/devices/platform/coretemp.0/hwmon/hwmon2";

/// k10temp + nct6799 + a runtime-active amdgpu as hwmon0 and a suspended iGPU.
void buildAmdDesktop(FakeSysfs& sysfs);
constexpr const char* amdSuspendedGpuChip =
    "sys/devices/pci0000:00/0000:00:08.1/0000:0e:00.0/hwmon/hwmon2";

/// coretemp + thinkpad_acpi with one fan, acpitz mirrored the old way (no device).
void buildThinkPad(FakeSysfs& sysfs);

/// applesmc with its attributes on the platform device, two fans with output/manual.
void buildMacBook(FakeSysfs& sysfs);
constexpr const char* macSmcDevice = "sys/devices/platform/applesmc.768";

/// A small board: cpu-thermal zone mirrored by hwmon, a pwm fan, no hwmon CPU sensor.
void buildRaspberryPi(FakeSysfs& sysfs);

/// Only thermal zones: acpitz (old-style mirror), two x86_pkg_temp, iwlwifi.
void buildThermalZonesOnly(FakeSysfs& sysfs);
