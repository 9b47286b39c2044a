#pragma once

#include <cstdint>

/// Heap blocks allocated on the calling thread since it started: every malloc, calloc,
/// realloc and aligned allocation, so Qt's containers (which call malloc) count as well
/// as operator new. Linked into every benchmark program.
std::uint64_t allocationsOnThisThread();

/// Runs `step` once per benchmark iteration and records the allocations of an average
/// step as the counter `name`.
template <typename State, typename Step>
void measureAllocations(State& state, const char* name, Step&& step) {
    const std::uint64_t before = allocationsOnThisThread();
    for (auto _ : state)
        step();
    state.counters[name] = double(allocationsOnThisThread() - before) / double(state.iterations());
}
