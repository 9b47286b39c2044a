#include "SampledReadings.h"

#include "monitors/SystemMonitor.h"

MenuBarReadings sampledReadings(const SystemMonitor& monitor) {
    MenuBarReadings readings;
    readings.cpuUsage = monitor.cpuUsage();
    readings.cpuHistory = monitor.cpuHistory();
    readings.busiestCore = monitor.busiestCore();
    readings.memoryUsed = monitor.memoryUsed();
    readings.memoryTotal = monitor.memoryTotal();
    readings.memoryHistory = monitor.memoryHistory();
    readings.diskUsed = monitor.diskUsed();
    readings.diskTotal = monitor.diskTotal();
    readings.networkBytesIn = monitor.networkBytesIn();
    readings.networkBytesOut = monitor.networkBytesOut();
    readings.networkInHistory = monitor.networkInHistory();
    readings.networkOutHistory = monitor.networkOutHistory();
    readings.temperature = monitor.temperature();
    readings.gpuTemperature = monitor.gpuTemperature();
    readings.temperatureHistory = monitor.temperatureHistory();
    readings.fanSpeed = monitor.fanSpeed();
    readings.fanMaxSpeed = monitor.fanMaxSpeed();
    return readings;
}
