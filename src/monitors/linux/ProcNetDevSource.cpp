#include "ProcNetDevSource.h"

#include "ProcNetDevParser.h"
#include "TextFile.h"

ProcNetDevSource::ProcNetDevSource(std::string root) : path(pathUnderRoot(root, "/proc/net/dev")) {}

std::optional<std::vector<InterfaceCounters>> ProcNetDevSource::readInterfaces() {
    if (!readTextFile(path, buffer))
        return std::nullopt;
    return parseProcNetDev(buffer);
}
