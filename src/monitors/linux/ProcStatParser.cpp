#include "ProcStatParser.h"

#include "DecimalField.h"

#include <array>

std::vector<NumberedCpuTicks> parseProcStat(std::string_view text) {
    std::vector<NumberedCpuTicks> cpus;
    parseProcStat(text, cpus);
    return cpus;
}

void parseProcStat(std::string_view text, std::vector<NumberedCpuTicks>& cpus) {
    cpus.clear();
    forEachLine(text, [&](std::string_view line) {
        std::string_view rest = line;
        const std::string_view name = nextField(rest);
        if (!name.starts_with("cpu") || name.size() == 3)
            return;
        const auto number = parseUnsigned(name.substr(3));
        if (!number || *number > 1u << 20)
            return;
        std::array<std::uint64_t, 10> fields{};
        std::size_t count = 0;
        // A kernel may add counters after the ten known ones; they are ignored.
        for (std::string_view field = nextField(rest); !field.empty() && count < fields.size();
             field = nextField(rest)) {
            const auto value = parseUnsigned(field);
            if (!value)
                return;
            fields[count++] = *value;
        }
        if (count < 4)
            return;
        const auto [user, nice, system, idle, iowait, irq, softirq, steal, guest, guestNice] =
            fields;
        (void)guest;
        (void)guestNice;
        NumberedCpuTicks cpu;
        cpu.cpu = static_cast<unsigned>(*number);
        cpu.ticks.user = user;
        cpu.ticks.nice = nice;
        cpu.ticks.system = system + irq + softirq + steal;
        cpu.ticks.idle = idle + iowait;
        cpus.push_back(cpu);
    });
}
