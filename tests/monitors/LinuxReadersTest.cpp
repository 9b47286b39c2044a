#include "monitors/CPUMonitor.h"
#include "monitors/linux/LinuxMemorySource.h"
#include "monitors/linux/ProcNetDevSource.h"
#include "monitors/linux/ProcStatCpuSource.h"
#include "monitors/linux/ProcStatParser.h"
#include "monitors/linux/StatvfsVolumeSource.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <map>
#include <sstream>
#include <thread>

namespace {

std::string fixture(const std::string& name) {
    return readFile(fixturePath("proc/" + name));
}

TEST(ProcStatParser, FoldsEveryKernelShapeIntoFourCounters) {
    struct Case {
        const char* file;
        std::size_t cpus;
        unsigned lastCpuNumber;
        CpuTicks firstCpu; // {user, system, idle, nice}
    };
    const Case cases[] = {
        {"stat-laptop-8cpu.txt", 8, 7, {287612, 80457 + 4671, 3753421 + 9120, 612}},
        {"stat-old-kernel-7fields.txt", 2, 1, {6000, 2000 + 20 + 30, 440000 + 1000, 150}},
        {"stat-4fields.txt", 1, 0, {1000, 500, 20000, 10}},
        {"stat-hotplug-cpu2-offline.txt", 3, 3, {300500, 100100 + 3000, 4000100 + 16000, 1000}},
        // steal folds into system; guest and guest_nice are already inside user and nice.
        {"stat-steal-guest.txt", 1, 0, {500, 300 + 10 + 20 + 70, 8000 + 100, 20}},
        {"stat-vm-2cpu.txt", 2, 1, {722, 998 + 5 + 4, 62212 + 10, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const auto cpus = parseProcStat(fixture(c.file));
        ASSERT_EQ(cpus.size(), c.cpus);
        EXPECT_EQ(cpus.back().cpu, c.lastCpuNumber);
        EXPECT_EQ(cpus.front().ticks, c.firstCpu);
    }
    // Counters a newer kernel adds after the tenth are ignored; fewer than four, a sign, a
    // letter or no CPU number skip the line. {user, system, idle, nice}
    const std::pair<const char*, std::optional<CpuTicks>> lines[] = {
        {"cpu0 1 2 3 4", CpuTicks{1, 3, 4, 2}},
        {"cpu0 1 2 3 4 5 6 7", CpuTicks{1, 16, 9, 2}},
        {"cpu0 1 2 3 4 5 6 7 8", CpuTicks{1, 24, 9, 2}},
        {"cpu0 1 2 3 4 5 6 7 8 9 10", CpuTicks{1, 24, 9, 2}},
        {"cpu0 1 2 3 4 5 6 7 8 9 10 11 12\n", CpuTicks{1, 24, 9, 2}},
        {"cpu0 1 2 3", std::nullopt},
        {"cpu0 1 -2 3 4", std::nullopt},
        {"cpu0 1 2 x 4", std::nullopt},
        {"cpuX 1 2 3 4", std::nullopt},
    };
    for (const auto& [line, ticks] : lines) {
        const auto cpus = parseProcStat(line);
        EXPECT_EQ(cpus.empty() ? std::nullopt : std::optional(cpus[0].ticks), ticks) << line;
    }
}

// Read beside df on this machine: a wrong field (the reserve counted as used) or a wrong
// unit shows, which fixtures written by the same hand would not.
TEST(StatvfsVolumeSource, UsedAndAvailableAgreeWithDf) {
    const auto capacity = StatvfsVolumeSource("/", "").readCapacity();
    ASSERT_TRUE(capacity);
    FILE* df = ::popen("df -B1 --output=size,used,avail / | tail -n 1", "r");
    ASSERT_NE(df, nullptr);
    double size = 0, used = 0, available = 0;
    const int read = std::fscanf(df, "%lf %lf %lf", &size, &used, &available);
    ::pclose(df);
    ASSERT_EQ(read, 3) << "df printed no figures";
    const double tolerance = 64.0 * (1 << 20); // other writers between the two reads
    EXPECT_EQ(capacity->size, size);
    EXPECT_NEAR(capacity->size - capacity->free, used, tolerance);
    EXPECT_NEAR(capacity->available, available, tolerance);
}

// What a command prints, or "" when it cannot run.
std::string output(const std::string& command) {
    std::string text;
    if (FILE* pipe = ::popen((command + " 2>/dev/null").c_str(), "r")) {
        char buffer[4096];
        for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            text.append(buffer, got);
        ::pclose(pipe);
    }
    return text;
}

// More cross-checks on this machine, each against a tool or a file Vorlune does not read.
TEST(LinuxSources, ReadersAgreeWithTheKernelsOwnFiguresFreeAndIp) {
    // The kernel's all-CPU line (Vorlune adds up the cpuN lines), read around a second of
    // Vorlune's measuring: the busy shares agree within 5 points.
    const auto kernelTicks = [] { // user nice system idle iowait irq softirq steal
        std::istringstream line(readFile("/proc/stat").substr(3));
        std::uint64_t field[8] = {}, all = 0;
        for (auto& value : field)
            line >> value, all += value;
        return std::pair(all, field[3] + field[4]);
    };
    CPUMonitor cpu(std::make_unique<ProcStatCpuSource>());
    const auto [all0, idle0] = kernelTicks();
    cpu.getTotalUsage();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const double share = cpu.getTotalUsage();
    const auto [all1, idle1] = kernelTicks();
    ASSERT_GT(all1, all0);
    EXPECT_NEAR(share, 1.0 - double(idle1 - idle0) / double(all1 - all0), 0.05);

    // ip asks by netlink: each counter of a counted link lies between two reads of ours.
    ProcNetDevSource netDev;
    ASSERT_TRUE(netDev.readInterfaces());
    const auto before = *netDev.readInterfaces(); // a copy: the next read reuses the list
    const auto links = QJsonDocument::fromJson(QByteArray::fromStdString(output("ip -s -j link")));
    const auto* after = netDev.readInterfaces();
    ASSERT_TRUE(after);
    if (!links.isArray())
        GTEST_SKIP() << "ip (iproute2) is not installed";
    for (const auto& link : links.array()) {
        const auto bytes = [stats = link[QStringLiteral("stats64")]](const char* way) {
            return std::uint64_t(stats[QLatin1String(way)][QStringLiteral("bytes")].toInteger());
        };
        for (std::size_t i = 0; i < before.size() && i < after->size(); ++i) {
            const auto &first = before[i], &last = (*after)[i];
            if (first.name != link[QStringLiteral("ifname")].toString().toStdString() ||
                last.name != first.name || !last.counted)
                continue;
            EXPECT_TRUE(first.received <= bytes("rx") && bytes("rx") <= last.received) << last.name;
            EXPECT_TRUE(first.sent <= bytes("tx") && bytes("tx") <= last.sent) << last.name;
        }
    }

    // free: the installed size counts memory blocks, the kernel's reserve too, so from
    // MemTotal up to a quarter more. "used" differs on purpose (free: total - available,
    // which keeps reserves and some cache), so within a tenth of the total.
    std::istringstream free(output("free -b | awk '/^Mem:/ {print $2, $3}'"));
    double total = 0, used = 0;
    if (!(free >> total >> used))
        GTEST_SKIP() << "free (procps) is not installed";
    const auto memory = LinuxMemorySource().readMemory();
    ASSERT_TRUE(memory);
    EXPECT_GE(double(memory->installed), total);
    EXPECT_LE(double(memory->installed), total * 1.25);
    EXPECT_NEAR(double(memory->active + memory->wired + memory->compressed), used, total / 10);
}

TEST(ProcStatCpuSource, NeverReportsFallingCountersAndKeepsOfflineCpus) {
    TempDir root;
    root.write("proc/stat", "cpu0 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu1 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu2 100 0 50 1000 40 0 0 0 0 0\n");
    ProcStatCpuSource source(root.str());
    const CpuTicks offline = source.readTicks()->at(2);

    // iowait drops on cpu0, idle steps back on cpu1 after a resume, cpu2 goes offline.
    root.write("proc/stat", "cpu0 110 0 55 1010 30 0 0 0 0 0\n"
                            "cpu1 120 0 60 900 40 0 0 0 0 0\n");
    EXPECT_EQ(*source.readTicks(),
              (std::vector<CpuTicks>{{110, 55, 1040, 0}, {120, 60, 1040, 0}, offline}))
        << "idle + iowait never falls; an offline CPU keeps its last counters";
}

TEST(LinuxSources, MissingOrUnusableFilesAreFailedReads) {
    TempDir missing, noFigures, directories;
    noFigures.write("proc/stat", "intr 1 2 3\n");
    noFigures.write("proc/meminfo", "MemFree: 100 kB\n");
    for (const char* file : {"proc/stat", "proc/meminfo", "proc/net/dev"})
        directories.makeDirectory(file);
    for (const TempDir* root : {&missing, &noFigures, &directories}) {
        EXPECT_FALSE(ProcStatCpuSource(root->str()).readTicks());
        EXPECT_FALSE(LinuxMemorySource(root->str()).readMemory());
    }
    EXPECT_FALSE(ProcNetDevSource(directories.str()).readInterfaces());
}

// What an interface is decides, not its name: hardware links and bond or team masters
// count, a bond's ports do not (their master carries the same bytes), virtual ones never.
TEST(ProcNetDevSource, CountsHardwareLinksAndAggregatesWhateverTheirNames) {
    struct Link {
        const char* name;
        bool device;
        const char* devtype; // DEVTYPE in uevent, "" for none
        const char* master;  // "" for none
        bool counted;
    };
    const Link links[] = {
        {"lo", false, "", "", false},
        {"enp3s0", true, "", "", true},
        {"wlp2s0", true, "wlan", "", true},
        {"wwan0", true, "wwan", "", true},
        {"usb0", true, "", "", true},
        {"rndis0", true, "", "", true},
        {"ib0", true, "", "", true},
        {"lan0", true, "", "", true},
        {"docker0", false, "bridge", "", false},
        {"veth1a2b3c", false, "", "docker0", false},
        {"virbr0", false, "bridge", "", false},
        {"eno2", true, "", "virbr0", true},
        {"tun0", false, "", "", false},
        {"wg0", false, "wireguard", "", false},
        {"bond0", false, "bond", "", true},
        {"eno1", true, "", "bond0", false},
        {"team0", false, "team", "", true},
        {"enp5s0.100", false, "vlan", "", false},
    };
    TempDir root;
    std::string netDev = "Inter-|\n face |\n";
    for (const Link& link : links) {
        const std::string dir = std::string("sys/class/net/") + link.name;
        root.write(dir + "/uevent",
                   std::string("DEVTYPE=") + link.devtype + "\nINTERFACE=" + link.name + "\n");
        if (link.device)
            root.makeDirectory(dir + "/device");
        if (*link.master)
            root.link(std::string("../") + link.master, dir + "/master");
        netDev += std::string(link.name) + ": 1 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0\n";
    }
    root.write("proc/net/dev", netDev);
    ProcNetDevSource source(root.str());
    for (int read = 0; read < 2; ++read) { // the second from what the first learnt
        const auto interfaces = source.readInterfaces();
        ASSERT_TRUE(interfaces);
        ASSERT_EQ(interfaces->size(), std::size(links));
        for (std::size_t i = 0; i < std::size(links); ++i)
            EXPECT_EQ((*interfaces)[i].counted, links[i].counted) << links[i].name;
    }
}

TEST(LinuxMemorySource, CombinesMeminfoZramAndOnlineMemoryBlocks) {
    TempDir root;
    root.write("proc/meminfo", fixture("meminfo-laptop-zswap.txt"));
    root.write("sys/block/zram0/mm_stat", "8192 100 1048576 0 1048576 0 0 0 0\n");
    root.write("sys/block/zram1/mm_stat", "8192 100 2097152 0 2097152 0 0 0 0\n");
    root.write("sys/block/sda/stat", "1 2 3\n");
    root.write("sys/devices/system/memory/block_size_bytes", "8000000\n");
    for (int i = 0; i < 130; ++i)
        root.write("sys/devices/system/memory/memory" + std::to_string(i) + "/state",
                   i < 128 ? "online\n" : "offline\n");
    const auto counters = LinuxMemorySource(root.str()).readMemory();
    ASSERT_TRUE(counters);
    EXPECT_EQ(counters->installed, 128ull * 0x8000000) << "16 GiB of online blocks";
    EXPECT_EQ(counters->active, (4012356ull + 1790412) * 1024);
    EXPECT_EQ(counters->inactive, (3177852ull + 4571516) * 1024);
    EXPECT_EQ(counters->wired, (210444ull + 281240 + 27008 + 76540 + 2048) * 1024);
    EXPECT_EQ(counters->compressed, 112340ull * 1024 + 1048576 + 2097152)
        << "zswap plus zram; Zswapped must not be read as Zswap";

    TempDir bare; // no memory blocks: MemTotal is the installed size
    bare.write("proc/meminfo", fixture("meminfo-vm-zram.txt"));
    EXPECT_EQ(LinuxMemorySource(bare.str()).readMemory()->installed, 24684092ull * 1024);
}

TEST(ProcNetDevSource, Reads64BitCountersOfEveryInterface) {
    TempDir root;
    root.write("proc/net/dev", fixture("netdev-desktop-virtual.txt") +
                                   "eth9:123456 1 0 0 0 0 0 0 99 1 0 0 0 0 0 0\nbad: 1 2 3\n");
    ProcNetDevSource source(root.str());
    const auto* interfaces = source.readInterfaces();
    ASSERT_TRUE(interfaces);
    std::map<std::string, std::uint64_t> received, sent;
    for (const auto& interface : *interfaces) {
        received[interface.name] = interface.received;
        sent[interface.name] = interface.sent;
    }
    EXPECT_EQ(received.size(), 11u) << "the malformed line is skipped";
    EXPECT_EQ(received["enp3s0"], 8589934592000u) << "counters above 4 GiB must not wrap";
    EXPECT_EQ(sent["enp3s0"], 4294967296000u);
    EXPECT_EQ(received["eth9"], 123456u) << "a number joined to the colon";
    EXPECT_EQ(sent["eth9"], 99u);
}

} // namespace
