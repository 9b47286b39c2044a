#include "monitors/linux/HelperLocation.h"
#include "ScratchDir.h"
#include "monitors/ThermalMonitor.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

enum class Entry { absent, executable, plainFile, directory };

void place(const ScratchDir& dir, const std::string& relative, Entry entry) {
    switch (entry) {
    case Entry::absent:
        break;
    case Entry::executable:
        dir.writeScript(relative, "exit 0\n");
        break;
    case Entry::plainFile:
        dir.writeFile(relative, "exit 0\n", 0644);
        break;
    case Entry::directory:
        std::filesystem::create_directories(dir.path() / relative);
        break;
    }
}

TEST(HelperLocation, FirstExecutableFileWins) {
    const struct {
        Entry installed, buildTree, buildPath;
        const char* expected; // relative to the scratch directory, or nullptr
    } cases[] = {
        {Entry::executable, Entry::executable, Entry::executable, "libexec/vorlune/smc_helper"},
        {Entry::absent, Entry::executable, Entry::executable, "SMCHelper/smc_helper"},
        {Entry::plainFile, Entry::executable, Entry::executable, "SMCHelper/smc_helper"},
        {Entry::directory, Entry::plainFile, Entry::executable, "build/smc_helper"},
        {Entry::absent, Entry::directory, Entry::executable, "build/smc_helper"},
        {Entry::absent, Entry::absent, Entry::plainFile, nullptr},
        {Entry::absent, Entry::absent, Entry::absent, nullptr},
    };
    for (const auto& c : cases) {
        ScratchDir dir;
        std::filesystem::create_directories(dir.path() / "bin");
        place(dir, "libexec/vorlune/smc_helper", c.installed);
        place(dir, "SMCHelper/smc_helper", c.buildTree);
        place(dir, "build/smc_helper", c.buildPath);
        const std::optional<std::string> found = locateHelperFrom(
            (dir.path() / "bin").string(), (dir.path() / "build/smc_helper").string());
        if (c.expected)
            EXPECT_EQ(found, (dir.path() / c.expected).string());
        else
            EXPECT_EQ(found, std::nullopt);
    }
}

TEST(HelperLocation, SymlinkToExecutableCounts) {
    ScratchDir dir;
    const auto target = dir.writeScript("elsewhere/smc_helper", "exit 0\n");
    std::filesystem::create_directories(dir.path() / "SMCHelper");
    std::filesystem::create_symlink(target, dir.path() / "SMCHelper/smc_helper");
    EXPECT_EQ(locateHelperFrom((dir.path() / "bin").string(), ""),
              (dir.path() / "SMCHelper/smc_helper").string());
}

TEST(HelperLocation, EmptyPlacesAreSkipped) {
    EXPECT_EQ(locateHelperFrom("", ""), std::nullopt);
}

TEST(HelperLocation, ThisExecutableFindsTheBuiltHelper) {
    // Test programs live in tests/thermal of the build tree, so only the build
    // directory's helper can be found, and only once it has been built.
    const std::string built = VORLUNE_BINARY_DIR "/SMCHelper/smc_helper";
    EXPECT_EQ(executableDirectory(),
              std::filesystem::canonical(VORLUNE_BINARY_DIR "/tests/thermal").string());
    const std::optional<std::string> expected =
        isExecutableFile(built) ? std::optional<std::string>(built) : std::nullopt;
    EXPECT_EQ(ThermalMonitor::locateHelper(), expected);
    EXPECT_EQ(ThermalMonitor().helperPath(), expected);
}

} // namespace
