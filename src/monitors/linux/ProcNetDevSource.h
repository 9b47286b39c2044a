#pragma once

#include "../NetworkMonitor.h"
#include "TextFile.h"

#include <map>
#include <string>

/// Interface byte counters from <root>/proc/net/dev: one read for all interfaces, and
/// 64-bit counters that do not wrap at 4 GiB. Which interfaces count comes from
/// <root>/sys/class/net, looked at again only when the set of interfaces changes.
class ProcNetDevSource : public InterfaceCounterSource {
public:
    explicit ProcNetDevSource(std::string root = "/");
    const std::vector<InterfaceCounters>* readInterfaces() override;

private:
    bool isCounted(const std::string& name);

    OpenTextFile file;
    std::string classNetDir;
    std::string buffer;
    std::vector<InterfaceCounters> parsed;
    std::map<std::string, bool> countedByName; // for the interfaces of the last read
};
