#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process for a condition the sampler treats as a broken invariant
/// (a counter that runs backwards, an overflow, a non-finite fan speed).
[[noreturn]] inline void fatalSamplingError(const char* message) {
    std::fprintf(stderr, "vorlune: fatal: %s\n", message);
    std::fflush(stderr);
    std::abort();
}
