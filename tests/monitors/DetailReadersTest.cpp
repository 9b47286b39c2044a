// The readers behind the detail popovers, on fixture trees: processes, the control
// group's memory limit and the mounted file systems.
#include "monitors/linux/CgroupMemoryLimit.h"
#include "monitors/linux/LinuxDetailSource.h"
#include "monitors/linux/MountTable.h"
#include "monitors/linux/ProcessTable.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>
#include <unistd.h>

namespace {

// Two tables two seconds apart, at 100 ticks a second. Between them pid 400 ended with its
// folder still listed, 700 lost its statm and 800 its stat text, 500 went to a new process
// and 600 started: none is an error, and only processes seen in both count for CPU.
TEST(TopProcesses, ReadFromTwoTablesSkippingWhatVanishedBetweenThem) {
    ASSERT_EQ(::sysconf(_SC_CLK_TCK), 100) << "the fixtures count 100 ticks a second";
    const std::string dir = fixturePath("processes/");
    const auto second = readProcessTable(dir + "second", true);
    TopProcesses top;
    EXPECT_TRUE(top.busiest(readProcessTable(dir + "first", false), 10.0).empty());
    EXPECT_TRUE(top.busiest(second, 10.5).empty()) << "too soon: the first table stays";
    EXPECT_EQ(top.busiest(second, 12.0),
              (std::vector<ProcessFigure>{{"firefox", 1.75}, {"make", 0.5}, {"sh (x)", 0.125}}));
    const double page = double(::sysconf(_SC_PAGESIZE));
    EXPECT_EQ(TopProcesses::largest(second), (std::vector<ProcessFigure>{{"firefox", 50000 * page},
                                                                         {"cc1plus", 3000 * page},
                                                                         {"make", 2000 * page},
                                                                         {"sh (x)", 1000 * page},
                                                                         {"ld", 500 * page}}));
    top.forget();
    EXPECT_TRUE(top.busiest(second, 20.0).empty()) << "forgotten: a new first table";
}

TEST(CgroupMemoryLimit, TheTightestLimitOnTheWayUpBothCgroupVersions) {
    using Files = std::map<std::string, std::string>;
    const std::string v2 = "sys/fs/cgroup/", v1 = "sys/fs/cgroup/memory/";
    const std::tuple<const char*, Files, std::optional<std::uint64_t>> cases[] = {
        {"0::/user.slice/user-1000.slice/session-2.scope\n",
         {{v2 + "user.slice/memory.max", "max\n"},
          {v2 + "user.slice/user-1000.slice/memory.max", "4294967296\n"},
          {v2 + "user.slice/user-1000.slice/session-2.scope/memory.max", "max\n"}},
         4294967296},
        {"0::/a/b\n",
         {{v2 + "a/memory.max", "1073741824\n"}, {v2 + "a/b/memory.max", "8589934592\n"}},
         1073741824},
        {"0::/a\n", {{v2 + "a/memory.max", "max\n"}, {v2 + "memory.max", "junk\n"}}, std::nullopt},
        // A container's namespace: the path leads above its root, whose own limit counts.
        {"0::/../../system.slice\n", {{v2 + "memory.max", "2147483648\n"}}, 2147483648},
        // v1 memory beside a v2 hierarchy: v1 holds the limit; LONG_MAX in pages is none.
        {"4:memory:/job/x\n0::/\n",
         {{v1 + "job/x/memory.limit_in_bytes", "9223372036854771712\n"},
          {v1 + "job/memory.limit_in_bytes", "536870912\n"},
          {v2 + "memory.max", "1024\n"}},
         536870912},
        {"5:cpu,memory:/\n",
         {{v1 + "memory.limit_in_bytes", "9223372036854771712\n"}},
         std::nullopt},
        {"", {}, std::nullopt},
    };
    for (const auto& [cgroup, files, limit] : cases) {
        SCOPED_TRACE(cgroup);
        TempDir root;
        if (*cgroup)
            root.write("proc/self/cgroup", cgroup);
        for (const auto& [path, text] : files)
            root.write(path, text);
        EXPECT_EQ(readCgroupMemoryLimit(root.str()), limit);
    }
}

// Disks and removable media, each device once at its first mount point; no pseudo,
// memory, network, FUSE, overlay or loop-device file systems.
TEST(LinuxDetailSource, ListsEveryLocalFileSystemOnce) {
    TempDir root;
    const std::string mounts = readFile(fixturePath("proc/mounts-desktop.txt"));
    root.write("proc/self/mounts", mounts);
    for (const auto& entry : parseMounts(mounts))
        root.makeDirectory(entry.mountPoint.substr(1));
    std::vector<std::string> listed;
    for (const MountedVolume& volume : LinuxDetailSource(root.str()).readVolumes()) {
        listed.push_back(volume.mountPoint);
        EXPECT_TRUE(volume.total > 0 && volume.used <= volume.total) << volume.mountPoint;
    }
    EXPECT_EQ(listed, (std::vector<std::string>{"/", "/boot/efi", "/home", "/media/user/USB STICK",
                                                "/media/user/Windows", "/srv/data"}));
}

} // namespace
