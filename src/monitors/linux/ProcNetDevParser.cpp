#include "ProcNetDevParser.h"

#include "DecimalField.h"

std::vector<InterfaceCounters> parseProcNetDev(std::string_view text) {
    std::vector<InterfaceCounters> interfaces;
    parseProcNetDev(text, interfaces);
    return interfaces;
}

void parseProcNetDev(std::string_view text, std::vector<InterfaceCounters>& interfaces) {
    interfaces.clear();
    forEachLine(text, [&](std::string_view line) {
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return;
        std::string_view namePart = line.substr(0, colon);
        const std::string_view name = nextField(namePart);
        if (name.empty() || !nextField(namePart).empty())
            return;
        std::string_view rest = line.substr(colon + 1);
        std::optional<std::uint64_t> received;
        std::optional<std::uint64_t> sent;
        for (int index = 0; index < 9; ++index) {
            const auto value = parseUnsigned(nextField(rest));
            if (!value)
                return;
            if (index == 0)
                received = value;
            if (index == 8)
                sent = value;
        }
        // Real interface names are at most 15 characters: too short for the string to allocate.
        interfaces.push_back({std::string(name), *received, *sent});
    });
}
