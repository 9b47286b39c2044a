// libFuzzer target: any bytes a helper might print must decode without a fault,
// and the chosen temperatures must come from the decoded sensors.
#include "monitors/ThermalAnswerDecoder.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

[[noreturn]] void broken(const char* what) {
    std::fprintf(stderr, "decoded answer breaks an invariant: %s\n", what);
    std::abort();
}

bool isValueOfSensorLabelled(const ThermalReadings& readings, double value, const char* word) {
    for (const TemperatureSensor& sensor : readings.sensors) {
        if (sensor.value == value && sensor.label.find(word) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ThermalReadings readings =
        decodeThermalAnswer(std::string_view(reinterpret_cast<const char*>(data), size));

    for (const TemperatureSensor& sensor : readings.sensors) {
        if (!std::isfinite(sensor.value))
            broken("non-finite sensor value");
    }
    for (const FanInfo& fan : readings.fans) {
        const auto finite = [](const std::optional<double>& figure) {
            return !figure || std::isfinite(*figure);
        };
        if (!std::isfinite(fan.actual) || !finite(fan.min) || !finite(fan.max) ||
            !finite(fan.target))
            broken("non-finite fan speed");
    }
    if (readings.cpuTemp != 0.0 && !isValueOfSensorLabelled(readings, readings.cpuTemp, "CPU"))
        broken("CPU temperature not taken from a CPU sensor");
    if (readings.gpuTemp != 0.0 && !isValueOfSensorLabelled(readings, readings.gpuTemp, "GPU"))
        broken("GPU temperature not taken from a GPU sensor");
    return 0;
}
