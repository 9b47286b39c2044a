#pragma once

#include "../NetworkMonitor.h"

#include <string>

/// Interface byte counters from <root>/proc/net/dev: one read for all
/// interfaces, and 64-bit counters that do not wrap at 4 GiB.
class ProcNetDevSource : public InterfaceCounterSource {
public:
    explicit ProcNetDevSource(std::string root = "/");
    std::optional<std::vector<InterfaceCounters>> readInterfaces() override;

private:
    std::string path;
    std::string buffer;
};
