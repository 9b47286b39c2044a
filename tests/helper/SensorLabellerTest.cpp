#include "SensorLabeller.h"

#include <gtest/gtest.h>

namespace {

struct LabelCase {
    std::string chip;
    std::vector<RawTemperature> sensors;
    std::vector<std::optional<std::string>> expected;
};

TEST(SensorLabeller, NamesSensorsSoOnlyRealCpusSayCpuAndOnlyGpusSayGpu) {
    const std::vector<LabelCase> cases = {
        {"coretemp",
         {{1, "Package id 0", 50000}, {2, "Core 0", 48000}, {3, "Core 12", 47000}, {4, "", 1}},
         {"CPU Die", "CPU Core 0", "CPU Core 12", "CPU temp4"}},
        {"k10temp",
         {{1, "Tctl", 70000}, {2, "Tdie", 43000}, {3, "Tccd1", 41000}, {4, "Tccd2", 40000}},
         {"CPU Tctl", "CPU Die", "CPU CCD 1", "CPU CCD 2"}},
        {"k10temp", {{1, "Tctl", 45000}, {3, "Tccd1", 41000}}, {"CPU Die", "CPU CCD 1"}},
        {"k10temp", {{1, "", 45000}}, {"CPU Die"}},
        {"zenpower", {{1, "Tdie", 45000}, {2, "Tctl", 45000}}, {"CPU Die", "CPU Tctl"}},
        {"applesmc",
         {{1, "TC0P", 40000},
          {2, "TC0D", 52000},
          {3, "TC0E", 53000},
          {4, "TC0F", 54000},
          {5, "TB0T", 30000},
          {6, "TCXC", 50000},
          {7, "TG0P", 45000}},
         {"CPU Proximity", "CPU Die", "CPU Die", "CPU Die", "applesmc TB0T", "applesmc TCXC",
          "applesmc TG0P"}},
        {"amdgpu",
         {{1, "edge", 45000}, {2, "junction", 52000}, {3, "mem", 60000}, {4, "vddgfx", 40000}},
         {"GPU Edge", "GPU Hotspot", "GPU Memory", "GPU vddgfx"}},
        {"amdgpu", {{1, "edge", 9999}, {2, "junction", 10000}}, {std::nullopt, "GPU Hotspot"}},
        {"nouveau", {{1, "", 55000}, {2, "", 0}}, {"GPU", std::nullopt}},
        {"radeon", {{1, "", 55000}}, {"GPU"}},
        {"nvme",
         {{1, "Composite", 38000}, {2, "Sensor 1", 37000}, {3, "", 36000}},
         {"SSD Composite", "SSD Sensor 1", "SSD"}},
        // Board chips: a floating "CPUTIN" or an EC's idea of the CPU must never win.
        {"nct6798",
         {{1, "SYSTIN", 34000},
          {2, "CPUTIN", 98000},
          {3, "AUXTIN0", 20000},
          {7, "PECI Agent 0 Calibration", 50000}},
         {"nct6798 SYSTIN", "Board sensor (cputin)", "nct6798 AUXTIN0",
          "nct6798 PECI Agent 0 Calibration"}},
        {"dell_smm",
         {{1, "CPU", 50000}, {2, "Ambient", 30000}, {3, "GPU", 0}},
         {"Board sensor (cpu)", "dell_smm Ambient", "dell_smm GPU"}},
        {"thinkpad", {{1, "", 50000}, {2, "", 40000}}, {"thinkpad temp1", "thinkpad temp2"}},
        {"acpitz", {{1, "", 27800}}, {"acpitz temp1"}},
        {"it8792",
         {{1, "", 35000}, {2, "cpu_socket", 45000}},
         {"it8792 temp1", "Board sensor (cpu_socket)"}},
    };
    for (const LabelCase& c : cases) {
        SCOPED_TRACE(c.chip);
        EXPECT_EQ(labelChipTemperatures(c.chip, c.sensors), c.expected);
    }
}

TEST(SensorLabeller, ThermalZonesSayCpuDieOnlyWhenStandingInForTheCpu) {
    EXPECT_EQ(labelThermalZone("cpu-thermal", true), "CPU Die");
    EXPECT_EQ(labelThermalZone("x86_pkg_temp", false), "x86_pkg_temp");
    EXPECT_EQ(labelThermalZone("acpitz", false), "acpitz");
    EXPECT_EQ(labelThermalZone("TCPU", false), "Board sensor (tcpu)");
    for (const char* type : {"x86_pkg_temp", "cpu-thermal", "cpu_thermal", "soc_thermal"})
        EXPECT_TRUE(isCpuZoneType(type)) << type;
    for (const char* type : {"acpitz", "TCPU", "iwlwifi_1", "gpu-thermal", "INT3400 Thermal"})
        EXPECT_FALSE(isCpuZoneType(type)) << type;
}

TEST(SensorLabeller, ClassifiesChipsByDriverName) {
    EXPECT_EQ(classifyChip("coretemp"), ChipKind::cpu);
    EXPECT_EQ(classifyChip("k10temp"), ChipKind::cpu);
    EXPECT_EQ(classifyChip("zenpower"), ChipKind::cpu);
    EXPECT_EQ(classifyChip("applesmc"), ChipKind::appleSmc);
    EXPECT_EQ(classifyChip("amdgpu"), ChipKind::gpu);
    EXPECT_EQ(classifyChip("nouveau"), ChipKind::gpu);
    EXPECT_EQ(classifyChip("radeon"), ChipKind::gpu);
    EXPECT_EQ(classifyChip("nvme"), ChipKind::nvme);
    EXPECT_EQ(classifyChip("nct6775"), ChipKind::other);
    EXPECT_EQ(classifyChip("coretemp "), ChipKind::other);
}

} // namespace
