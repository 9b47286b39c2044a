#include "ProcNetDevSource.h"

#include "CountedLink.h"
#include "ProcNetDevParser.h"
#include "TextFile.h"

ProcNetDevSource::ProcNetDevSource(std::string root)
    : path(pathUnderRoot(root, "/proc/net/dev")),
      classNetDir(pathUnderRoot(root, "/sys/class/net")) {}

bool ProcNetDevSource::isCounted(const std::string& name) {
    const auto known = countedByName.find(name);
    if (known != countedByName.end())
        return known->second;
    const bool counted = isCountedLink(readLinkShape(classNetDir, name));
    countedByName.emplace(name, counted);
    return counted;
}

std::optional<std::vector<InterfaceCounters>> ProcNetDevSource::readInterfaces() {
    if (!readTextFile(path, buffer))
        return std::nullopt;
    std::vector<InterfaceCounters> interfaces = parseProcNetDev(buffer);
    // A link that came or went (a bond formed, a tether plugged in) can change what the
    // others are; everything is looked at again then.
    bool sameSet = interfaces.size() == countedByName.size();
    for (const InterfaceCounters& interface : interfaces)
        sameSet = sameSet && countedByName.count(interface.name) == 1;
    if (!sameSet)
        countedByName.clear();
    for (InterfaceCounters& interface : interfaces)
        interface.counted = isCounted(interface.name);
    return interfaces;
}
