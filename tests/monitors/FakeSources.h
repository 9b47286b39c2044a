#pragma once

#include "monitors/CpuTicks.h"
#include "monitors/DiskMonitor.h"
#include "monitors/MemoryMonitor.h"
#include "monitors/NetworkMonitor.h"

#include <deque>
#include <optional>
#include <vector>

// Readings handed out in order, the last one repeated; nullopt plays a failed read.
template <typename Value> struct Script {
    std::deque<std::optional<Value>> reads;
    std::optional<Value> next() {
        if (reads.size() > 1) {
            auto value = reads.front();
            reads.pop_front();
            return value;
        }
        return reads.empty() ? std::nullopt : reads.front();
    }
};

using CpuScript = Script<std::vector<CpuTicks>>;
using Interfaces = std::vector<InterfaceCounters>;

#define SCRIPTED_SOURCE(Name, Interface, Value, read)                                              \
    struct Name : Interface, Script<Value> {                                                       \
        explicit Name(Script<Value> script) : Script<Value>(std::move(script)) {}                  \
        std::optional<Value> read() override { return next(); }                                    \
    };
SCRIPTED_SOURCE(ScriptedMemory, MemorySource, MemoryCounters, readMemory)
SCRIPTED_SOURCE(ScriptedVolume, VolumeSource, VolumeCapacity, readCapacity)
#undef SCRIPTED_SOURCE

// Sources that lend their own list, as the real ones do, rather than hand out a copy.
#define SCRIPTED_LIST_SOURCE(Name, Interface, Value, read)                                         \
    struct Name : Interface, Script<Value> {                                                       \
        explicit Name(Script<Value> script) : Script<Value>(std::move(script)) {}                  \
        std::optional<Value> lent;                                                                 \
        const Value* read() override { return (lent = next()) ? &*lent : nullptr; }                \
    };
SCRIPTED_LIST_SOURCE(ScriptedCpu, CpuTickSource, std::vector<CpuTicks>, readTicks)
SCRIPTED_LIST_SOURCE(ScriptedInterfaces, InterfaceCounterSource, Interfaces, readInterfaces)
#undef SCRIPTED_LIST_SOURCE
