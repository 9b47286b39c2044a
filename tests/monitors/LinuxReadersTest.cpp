#include "monitors/linux/LinuxMemorySource.h"
#include "monitors/linux/ProcNetDevSource.h"
#include "monitors/linux/ProcStatCpuSource.h"
#include "monitors/linux/ProcStatParser.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>

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
    // Too few or too many counters, a sign, a letter, no number: skipped.
    EXPECT_EQ(parseProcStat("cpu0 1 2 3\ncpu1 1 2 3 4 5 6 7 8 9 10 11\ncpu2 1 -2 3 4\n"
                            "cpu3 1 2 x 4\ncpuX 1 2 3 4\ncpu4 1 2 3 4")
                  .size(),
              1u);
}

TEST(ProcStatCpuSource, NeverReportsFallingCountersAndKeepsOfflineCpus) {
    TempDir root;
    root.write("proc/stat", "cpu0 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu1 100 0 50 1000 40 0 0 0 0 0\n"
                            "cpu2 100 0 50 1000 40 0 0 0 0 0\n");
    ProcStatCpuSource source(root.str());
    const CpuTicks offline = source.readTicks().value().at(2);

    // iowait drops on cpu0, idle steps back on cpu1 after a resume, cpu2 goes offline.
    root.write("proc/stat", "cpu0 110 0 55 1010 30 0 0 0 0 0\n"
                            "cpu1 120 0 60 900 40 0 0 0 0 0\n");
    EXPECT_EQ(source.readTicks(),
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
    const auto interfaces = ProcNetDevSource(root.str()).readInterfaces();
    ASSERT_TRUE(interfaces);
    std::map<std::string, std::uint64_t> received, sent;
    for (const auto& interface : *interfaces) {
        received[interface.name] = interface.received;
        sent[interface.name] = interface.sent;
    }
    EXPECT_EQ(received.size(), 11u) << "the malformed line is skipped";
    EXPECT_EQ(received["enp3s0"], 8589934592000u) << "counters above 4 GiB must not wrap";
    EXPECT_EQ(sent["enp3s0"], 4294967296000u);
    EXPECT_EQ(received["br-0123abcd"], 444444u);
    EXPECT_EQ(sent["wwan0"], 3000u);
    EXPECT_EQ(received["eth9"], 123456u) << "a number joined to the colon";
    EXPECT_EQ(sent["eth9"], 99u);
}

} // namespace
