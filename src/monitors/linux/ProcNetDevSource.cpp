#include "ProcNetDevSource.h"

#include "CountedLink.h"
#include "ProcNetDevParser.h"

ProcNetDevSource::ProcNetDevSource(std::string root)
    : file(pathUnderRoot(root, "/proc/net/dev")),
      classNetDir(pathUnderRoot(root, "/sys/class/net")) {}

bool ProcNetDevSource::isCounted(const std::string& name) {
    const auto known = countedByName.find(name);
    if (known != countedByName.end())
        return known->second;
    const bool counted = isCountedLink(readLinkShape(classNetDir, name));
    countedByName.emplace(name, counted);
    return counted;
}

const std::vector<InterfaceCounters>* ProcNetDevSource::readInterfaces() {
    if (!file.read(buffer))
        return nullptr;
    parseProcNetDev(buffer, parsed);
    // A link that came or went (a bond formed, a tether plugged in) can change what the
    // others are; everything is looked at again then.
    bool sameSet = parsed.size() == countedByName.size();
    for (const InterfaceCounters& interface : parsed)
        sameSet = sameSet && countedByName.count(interface.name) == 1;
    if (!sameSet)
        countedByName.clear();
    for (InterfaceCounters& interface : parsed)
        interface.counted = isCounted(interface.name);
    return &parsed;
}
