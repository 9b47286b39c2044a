#pragma once

#include "monitors/CpuTicks.h"
#include "monitors/DiskMonitor.h"
#include "monitors/MemoryMonitor.h"
#include "monitors/NetworkMonitor.h"

#include <deque>
#include <functional>
#include <optional>
#include <vector>

// Sources that hand out a scripted sequence of readings; nullopt plays a failed read.
template <typename Value, typename Interface> class ScriptedSource : public Interface {
public:
    explicit ScriptedSource(std::deque<std::optional<Value>> script) : script(std::move(script)) {}
    std::optional<Value> next() {
        if (script.empty())
            return last;
        last = script.front();
        script.pop_front();
        return last;
    }

private:
    std::deque<std::optional<Value>> script;
    std::optional<Value> last;
};

class ScriptedCpuSource : public ScriptedSource<std::vector<CpuTicks>, CpuTickSource> {
public:
    using ScriptedSource::ScriptedSource;
    std::optional<std::vector<CpuTicks>> readTicks() override { return next(); }
};

class ScriptedMemorySource : public ScriptedSource<MemoryCounters, MemorySource> {
public:
    using ScriptedSource::ScriptedSource;
    std::optional<MemoryCounters> readMemory() override { return next(); }
};

class ScriptedVolumeSource : public ScriptedSource<VolumeCapacity, VolumeSource> {
public:
    using ScriptedSource::ScriptedSource;
    std::optional<VolumeCapacity> readCapacity() override { return next(); }
};

class ScriptedInterfaceSource
    : public ScriptedSource<std::vector<InterfaceCounters>, InterfaceCounterSource> {
public:
    using ScriptedSource::ScriptedSource;
    std::optional<std::vector<InterfaceCounters>> readInterfaces() override { return next(); }
};
