#include "TempTree.h"
#include "monitors/linux/LinuxMemorySource.h"
#include "monitors/linux/MeminfoParser.h"
#include "monitors/linux/ProcNetDevParser.h"
#include "monitors/linux/ProcNetDevSource.h"
#include "monitors/linux/ProcStatCpuSource.h"
#include "monitors/linux/ProcStatParser.h"
#include "monitors/linux/StatvfsVolumeSource.h"
#include "monitors/linux/TextFile.h"

#include <gtest/gtest.h>

#include <map>

namespace {

std::string readFixture(const std::string& name) {
    std::string text;
    EXPECT_TRUE(readTextFile(fixture(name), text)) << name;
    return text;
}

TEST(ProcStatParser, ParsesEveryKernelShape) {
    struct Case {
        const char* file;
        std::size_t cpus;
        unsigned lastCpuNumber;
        CpuTicks firstCpu;
    };
    const std::vector<Case> cases{
        {"proc/stat-laptop-8cpu.txt", 8, 7, {287612, 80457 + 4671, 3753421 + 9120, 612}},
        {"proc/stat-old-kernel-7fields.txt", 2, 1, {6000, 2000 + 20 + 30, 440000 + 1000, 150}},
        {"proc/stat-4fields.txt", 1, 0, {1000, 500, 20000, 10}},
        {"proc/stat-hotplug-cpu2-offline.txt",
         3,
         3,
         {300500, 100100 + 3000, 4000100 + 16000, 1000}},
        // steal folds into system; guest (200) and guest_nice (5) are already in user and nice.
        {"proc/stat-steal-guest.txt", 1, 0, {500, 300 + 10 + 20 + 70, 8000 + 100, 20}},
        {"proc/stat-vm-2cpu.txt", 2, 1, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const auto cpus = parseProcStat(readFixture(c.file));
        ASSERT_EQ(cpus.size(), c.cpus);
        EXPECT_EQ(cpus.back().cpu, c.lastCpuNumber);
        if (c.firstCpu != CpuTicks{})
            EXPECT_EQ(cpus.front().ticks, c.firstCpu);
    }
}

TEST(ProcStatParser, SkipsMalformedLines) {
    const auto cpus = parseProcStat("cpu  1 2 3 4\n"
                                    "cpu0 1 2 3\n"                   // too few counters
                                    "cpu1 1 2 3 4 5 6 7 8 9 10 11\n" // too many
                                    "cpu2 1 -2 3 4\n"                // negative
                                    "cpu3 1 2 x 4\n"                 // not a number
                                    "cpuX 1 2 3 4\n"
                                    "cpu4 1 2 3 4");
    ASSERT_EQ(cpus.size(), 1u);
    EXPECT_EQ(cpus[0].cpu, 4u);
    EXPECT_TRUE(parseProcStat("").empty());
}

TEST(ProcStatCpuSource, NeverReportsFallingCountersAndKeepsOfflineCpus) {
    TempTree tree;
    tree.write("proc/stat", "cpu0 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu1 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu2 100 0 50 1000 40 0 0 0 0 0\n");
    ProcStatCpuSource source(tree.rootString());
    const auto first = source.readTicks();
    ASSERT_TRUE(first && first->size() == 3);

    // iowait drops on cpu0, idle steps back on cpu1 after a resume, cpu2 goes offline.
    tree.write("proc/stat", "cpu0 110 0 55 1010 30 0 0 0 0 0\n"
                            "cpu1 120 0 60 900 40 0 0 0 0 0\n");
    const auto second = source.readTicks();
    ASSERT_TRUE(second);
    ASSERT_EQ(second->size(), 3u);
    EXPECT_EQ((*second)[0].idle, 1040u) << "idle + iowait may not fall";
    EXPECT_EQ((*second)[0].user, 110u);
    EXPECT_EQ((*second)[1].idle, 1040u);
    EXPECT_EQ((*second)[1].user, 120u);
    EXPECT_EQ((*second)[2], (*first)[2]) << "an offline CPU keeps its last counters";

    // cpu3 comes online: reported in CPU-number order.
    tree.write("proc/stat", "cpu3 7 0 7 7 0 0 0 0 0 0\ncpu0 200 0 60 1100 40 0 0 0 0 0\n");
    const auto third = source.readTicks();
    ASSERT_TRUE(third && third->size() == 4);
    EXPECT_EQ((*third)[3].user, 7u);
    EXPECT_EQ((*third)[0].user, 200u);
}

TEST(ProcStatCpuSource, MissingOrEmptyFileIsAFailedRead) {
    TempTree tree;
    ProcStatCpuSource missing(tree.rootString());
    EXPECT_FALSE(missing.readTicks());
    tree.write("proc/stat", "intr 1 2 3\n");
    EXPECT_FALSE(missing.readTicks());
    // A directory where the file must be.
    TempTree other;
    std::filesystem::create_directories(other.root() / "proc/stat");
    EXPECT_FALSE(ProcStatCpuSource(other.rootString()).readTicks());
}

TEST(MeminfoParser, ReadsTheFieldsInBytes) {
    const auto laptop = parseMeminfo(readFixture("proc/meminfo-laptop-zswap.txt"));
    ASSERT_TRUE(laptop);
    EXPECT_EQ(laptop->memTotal, 16118524ull * 1024);
    EXPECT_EQ(laptop->activeAnon, 4012356ull * 1024);
    EXPECT_EQ(laptop->inactiveFile, 4571516ull * 1024);
    EXPECT_EQ(laptop->secPageTables, 2048ull * 1024);
    EXPECT_EQ(laptop->zswap, 112340ull * 1024) << "Zswapped must not be read as Zswap";

    const auto vm = parseMeminfo(readFixture("proc/meminfo-vm-zram.txt"));
    ASSERT_TRUE(vm);
    EXPECT_GT(vm->memTotal, 0u);

    EXPECT_FALSE(parseMeminfo("MemFree: 100 kB\n")) << "no MemTotal";
    EXPECT_FALSE(parseMeminfo(""));
    EXPECT_EQ(parseZramMemUsed("4096 74 12288 0 12288 0 0 0 0"), 12288u);
    EXPECT_FALSE(parseZramMemUsed("4096 74"));
}

TEST(LinuxMemorySource, CombinesMeminfoZramAndOnlineMemoryBlocks) {
    TempTree tree;
    tree.copy(fixture("proc/meminfo-laptop-zswap.txt"), "proc/meminfo");
    tree.write("sys/block/zram0/mm_stat", "8192 100 1048576 0 1048576 0 0 0 0\n");
    tree.write("sys/block/zram1/mm_stat", "8192 100 2097152 0 2097152 0 0 0 0\n");
    tree.write("sys/block/sda/stat", "1 2 3\n");
    tree.write("sys/devices/system/memory/block_size_bytes", "8000000\n");
    for (int i = 0; i < 130; ++i)
        tree.write("sys/devices/system/memory/memory" + std::to_string(i) + "/state",
                   i < 128 ? "online\n" : "offline\n");

    LinuxMemorySource source(tree.rootString());
    const auto counters = source.readMemory();
    ASSERT_TRUE(counters);
    EXPECT_EQ(counters->installed, 128ull * 0x8000000) << "16 GiB of online blocks";
    EXPECT_EQ(counters->active, (4012356ull + 1790412) * 1024);
    EXPECT_EQ(counters->inactive, (3177852ull + 4571516) * 1024);
    EXPECT_EQ(counters->wired, (210444ull + 281240 + 27008 + 76540 + 2048) * 1024);
    EXPECT_EQ(counters->compressed, 112340ull * 1024 + 1048576 + 2097152);
}

TEST(LinuxMemorySource, FallsBackToMemTotalAndFailsWithoutMeminfo) {
    TempTree tree;
    tree.write("proc/meminfo", "MemTotal: 1024 kB\nActive(anon): 10 kB\n");
    LinuxMemorySource source(tree.rootString());
    const auto counters = source.readMemory();
    ASSERT_TRUE(counters);
    EXPECT_EQ(counters->installed, 1024u * 1024);
    EXPECT_EQ(counters->compressed, 0u);

    TempTree empty;
    EXPECT_FALSE(LinuxMemorySource(empty.rootString()).readMemory());
}

TEST(ProcNetDevParser, Reads64BitCountersOfEveryInterface) {
    const auto interfaces = parseProcNetDev(readFixture("proc/netdev-desktop-virtual.txt"));
    std::map<std::string, std::pair<std::uint64_t, std::uint64_t>> byName;
    for (const auto& interface : interfaces)
        byName[interface.name] = {interface.received, interface.sent};
    ASSERT_EQ(byName.size(), 10u);
    EXPECT_EQ(byName["enp3s0"],
              (std::pair<std::uint64_t, std::uint64_t>{8589934592000, 4294967296000}))
        << "counters above 4 GiB must not wrap";
    EXPECT_EQ(byName["br-0123abcd"].first, 444444u);
    EXPECT_EQ(byName["wwan0"].second, 3000u);

    const auto joined = parseProcNetDev("eth0:123456 1 0 0 0 0 0 0 99 1 0 0 0 0 0 0\n"
                                        "bad: 1 2 3\n");
    ASSERT_EQ(joined.size(), 1u) << "a number joined to the colon still parses";
    EXPECT_EQ(joined[0].received, 123456u);
    EXPECT_EQ(joined[0].sent, 99u);
}

TEST(LiveMachine, HundredsOfRealReadsStayInRange) {
    ProcStatCpuSource cpu;
    LinuxMemorySource memory;
    StatvfsVolumeSource volume;
    ProcNetDevSource network;
    std::vector<CpuTicks> previous;
    for (int i = 0; i < 300; ++i) {
        const auto ticks = cpu.readTicks();
        ASSERT_TRUE(ticks);
        ASSERT_FALSE(ticks->empty());
        if (!previous.empty()) {
            ASSERT_EQ(ticks->size(), previous.size());
            for (std::size_t c = 0; c < ticks->size(); ++c) {
                EXPECT_GE((*ticks)[c].idle, previous[c].idle);
                EXPECT_GE((*ticks)[c].user, previous[c].user);
            }
        }
        previous = *ticks;

        const auto counters = memory.readMemory();
        ASSERT_TRUE(counters);
        EXPECT_GT(counters->installed, 0u);
        EXPECT_LE(counters->active + counters->wired, counters->installed);

        const auto capacity = volume.readCapacity();
        ASSERT_TRUE(capacity);
        EXPECT_GT(capacity->size, 0.0);
        EXPECT_LE(capacity->free, capacity->size);

        const auto interfaces = network.readInterfaces();
        ASSERT_TRUE(interfaces);
        EXPECT_FALSE(interfaces->empty()) << "lo is always listed";
    }
}

} // namespace
