#include "CountedLink.h"

#include "TextFile.h"

#include <sys/stat.h>

namespace {

bool exists(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

// Bonding and team drivers set DEVTYPE in the interface's uevent.
bool isAggregateAt(const std::string& interfaceDir) {
    std::string uevent;
    if (!readTextFile(interfaceDir + "/uevent", uevent))
        return false;
    return uevent.find("DEVTYPE=bond\n") != std::string::npos ||
           uevent.find("DEVTYPE=team\n") != std::string::npos;
}

} // namespace

bool isCountedLink(const LinkShape& link) {
    if (link.inAggregate)
        return false;
    return link.isAggregate || link.hasDevice;
}

LinkShape readLinkShape(const std::string& classNetDir, const std::string& name) {
    const std::string dir = classNetDir + "/" + name;
    LinkShape link;
    link.hasDevice = exists(dir + "/device");
    link.isAggregate = isAggregateAt(dir);
    link.inAggregate = isAggregateAt(dir + "/master"); // no master: no uevent to read
    return link;
}
