#include "DiskMonitor.h"

#include "GiB.h"

DiskMonitor::DiskMonitor(std::unique_ptr<VolumeSource> source) : source(std::move(source)) {}

DiskUsage DiskMonitor::getDiskUsage() {
    const auto capacity = source->readCapacity();
    if (!capacity)
        return {};
    return {gibFromBytes(capacity->size - capacity->free), gibFromBytes(capacity->size),
            gibFromBytes(capacity->available)};
}
