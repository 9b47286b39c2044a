#include "FakeMachines.h"

void buildIntelDesktop(const FakeSysfs& sysfs) {
    // acpitz with the mirror the kernel registers under the zone's own device.
    sysfs.addThermalZone(0, "acpitz", 27800);
    sysfs.addHwmon(0, "virtual/thermal/thermal_zone0", {"name=acpitz", "temp1_input=27800"});
    sysfs.addThermalZone(1, "x86_pkg_temp", 53000);
    // Fan 3's input cannot be read, fan 4 reports a fault and fan 6 is switched off:
    // none of them is a fan. Fan 5 stands still and is one.
    sysfs.addHwmon(1, "platform/nct6775.656",
                   {"name=nct6798", "temp1_input=34000", "temp1_label=SYSTIN", "temp2_input=98000",
                    "temp2_label=CPUTIN", "temp4_input=not a number", "fan1_input=812",
                    "fan1_min=300", "pwm1=77", "pwm1_enable=5", "fan2_input=1204", "pwm2=153",
                    "pwm2_enable=5", "fan4_input=640", "fan4_fault=1", "fan5_input=0",
                    "fan6_input=500", "fan6_enable=0"});
    sysfs.makeDirectory(std::string(intelBoardChip) + "/fan3_input");
    sysfs.addHwmon(2, "platform/coretemp.0",
                   {"name=coretemp", "temp1_input=52000", "temp1_label=Package id 0",
                    "temp1_crit=100000", "temp2_input=50000", "temp2_label=Core 0",
                    "temp2_crit=90000"});
    sysfs.addHwmon(3, "pci0000:00/0000:00:1d.0/0000:3d:00.0/nvme/nvme0",
                   {"name=nvme", "temp1_input=38850", "temp1_label=Composite"});
}

void buildAmdDesktop(const FakeSysfs& sysfs) {
    sysfs.addHwmon(0, "pci0000:00/0000:00:03.1/0000:0a:00.0",
                   {"name=amdgpu", "temp1_input=45000", "temp1_label=edge", "temp2_input=52000",
                    "temp2_label=junction", "fan1_input=1500", "fan1_min=0", "fan1_max=3300",
                    "fan1_target=1500", "pwm1=90", "pwm1_enable=2"});
    sysfs.write("sys/devices/pci0000:00/0000:00:03.1/0000:0a:00.0/power/runtime_status",
                "active\n");
    sysfs.addHwmon(1, "pci0000:00/0000:00:18.3",
                   {"name=k10temp", "temp1_input=61500", "temp1_label=Tctl", "temp3_input=55250",
                    "temp3_label=Tccd1"});
    sysfs.addHwmon(2, "pci0000:00/0000:00:08.1/0000:0e:00.0",
                   {"name=amdgpu", "temp1_input=40000", "temp1_label=edge", "fan1_input=0"});
    sysfs.write("sys/devices/pci0000:00/0000:00:08.1/0000:0e:00.0/power/runtime_status",
                "suspended\n");
    sysfs.addHwmon(3, "platform/nct6775.2592",
                   {"name=nct6799", "temp1_input=31000", "temp1_label=SYSTIN", "fan2_input=950",
                    "pwm2=100", "pwm2_enable=5"});
}

void buildMacBook(const FakeSysfs& sysfs) {
    sysfs.addHwmon(0, "platform/applesmc.768",
                   {"name=applesmc", "temp1_input=30000", "temp1_label=TB0T", "temp2_input=55000",
                    "temp2_label=TC0D", "temp3_input=45000", "temp3_label=TC0P", "fan1_input=2000",
                    "fan1_min=2000", "fan1_max=6200", "fan1_output=2000", "fan1_manual=0",
                    "fan2_input=1998", "fan2_min=2000", "fan2_max=5800", "fan2_output=2000",
                    "fan2_manual=0"},
                   true);
}
