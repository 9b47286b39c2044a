#include "SensorType.h"

namespace {

constexpr std::array<std::string_view, 9> keyWords{
    "cpu", "memory", "disk", "networkIn", "networkOut", "network", "cpuTemp", "gpuTemp", "fan"};

} // namespace

std::string_view sensorKeyWord(SensorType type) {
    return keyWords[static_cast<std::size_t>(type)];
}

int sensorTypeIndex(SensorType type) {
    return static_cast<int>(type);
}

std::optional<SensorType> sensorTypeAt(int index) {
    if (index < 0 || index >= static_cast<int>(keyWords.size()))
        return std::nullopt;
    return static_cast<SensorType>(index);
}
