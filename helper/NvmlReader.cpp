#include "NvmlReader.h"

#include <dlfcn.h>

namespace {

// The few NVML entry points used, declared by their documented C ABI.
using NvmlDevice = void*;
using NvmlInit = int (*)();
using NvmlShutdown = int (*)();
using NvmlHandleByBusId = int (*)(const char*, NvmlDevice*);
using NvmlGetTemperature = int (*)(NvmlDevice, int, unsigned int*);
constexpr int nvmlSuccess = 0;
constexpr int nvmlTemperatureGpu = 0;

// The GPUs bound to NVIDIA's driver (nouveau ones are hwmon chips). Looking there
// rather than through every PCI device costs one failed lookup on other machines.
std::vector<std::string> activeNvidiaGpus(const SysfsTree& tree) {
    std::vector<std::string> busIds;
    auto driverDir = tree.openDir("/sys/bus/pci/drivers/nvidia");
    if (!driverDir)
        return busIds;
    for (std::string& entry : driverDir->names()) {
        if (entry.find(':') == std::string::npos)
            continue; // bind, unbind, module, ...
        const auto deviceDir = tree.openDeviceDir(*driverDir, entry);
        const auto powerDir = deviceDir ? tree.openDeviceDir(*deviceDir, "power") : std::nullopt;
        if (powerDir && powerDir->readText("runtime_status") == "active")
            busIds.push_back(std::move(entry));
    }
    return busIds;
}

template <typename Function> Function symbol(void* library, const char* name) {
    return reinterpret_cast<Function>(::dlsym(library, name));
}

} // namespace

std::vector<NvmlTemperature> readNvmlTemperatures(const SysfsTree& tree) {
    const std::vector<std::string> busIds = activeNvidiaGpus(tree);
    if (busIds.empty())
        return {};
    void* library = ::dlopen("libnvidia-ml.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return {};
    std::vector<NvmlTemperature> temperatures;
    const auto init = symbol<NvmlInit>(library, "nvmlInit_v2");
    const auto shutdown = symbol<NvmlShutdown>(library, "nvmlShutdown");
    const auto handleByBusId =
        symbol<NvmlHandleByBusId>(library, "nvmlDeviceGetHandleByPciBusId_v2");
    const auto getTemperature = symbol<NvmlGetTemperature>(library, "nvmlDeviceGetTemperature");
    if (init && shutdown && handleByBusId && getTemperature && init() == nvmlSuccess) {
        for (const std::string& busId : busIds) {
            NvmlDevice device = nullptr;
            unsigned int celsius = 0;
            if (handleByBusId(busId.c_str(), &device) == nvmlSuccess &&
                getTemperature(device, nvmlTemperatureGpu, &celsius) == nvmlSuccess)
                temperatures.push_back({busId, static_cast<long long>(celsius) * 1000});
        }
        shutdown();
    }
    ::dlclose(library);
    return temperatures;
}
