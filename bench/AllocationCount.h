#pragma once

#include <cstdint>

/// Heap blocks allocated on the calling thread since it started: every malloc, calloc,
/// realloc and aligned allocation, so Qt's containers (which call malloc) count as well
/// as operator new. Linked into every benchmark program.
std::uint64_t allocationsOnThisThread();
