#include "SensorGroups.h"

SensorGroups groupSensors(const std::vector<TemperatureSensor>& sensors) {
    SensorGroups groups;
    for (const auto& sensor : sensors) {
        if (sensor.label.find("CPU") != std::string::npos)
            groups.cpu.push_back(sensor);
        else if (sensor.label.find("GPU") != std::string::npos)
            groups.gpu.push_back(sensor);
        else
            groups.other.push_back(sensor);
    }
    return groups;
}
