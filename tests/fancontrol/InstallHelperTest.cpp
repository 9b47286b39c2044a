// installHelper with stand-in elevation programs that run the script as this test's
// root user against a scratch install path, and the pieces it is made of.
#include "FanControlRig.h"

#include "monitors/HelperInstallation.h"
#include "monitors/ThermalMonitor.h"
#include "monitors/linux/AtomicFile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

TEST(InstallScriptText, CopiesTheHelperAndMakesItRootOwnedSetuid) {
    const struct {
        const char* helper;
        const char* installed;
        const char* script;
    } cases[] = {
        {"/opt/vorlune/libexec/vorlune/smc_helper", "/usr/local/bin/vorlune_smc_helper",
         "#!/bin/sh\nmkdir -p /usr/local/bin && cp \"/opt/vorlune/libexec/vorlune/smc_helper\" "
         "\"/usr/local/bin/vorlune_smc_helper\" && chown root:root "
         "\"/usr/local/bin/vorlune_smc_helper\" && chmod 4755 "
         "\"/usr/local/bin/vorlune_smc_helper\"\n"},
        // Paths go in as they are, spaces and all.
        {"/home/me/My Builds/SMCHelper/smc_helper", "/tmp/x/bin/vorlune_smc_helper",
         "#!/bin/sh\nmkdir -p /tmp/x/bin && cp \"/home/me/My Builds/SMCHelper/smc_helper\" "
         "\"/tmp/x/bin/vorlune_smc_helper\" && chown root:root \"/tmp/x/bin/vorlune_smc_helper\" "
         "&& chmod 4755 \"/tmp/x/bin/vorlune_smc_helper\"\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(installScriptText(c.helper, c.installed), c.script);
    EXPECT_STREQ(installScriptPath, "/tmp/vorlune_install.sh");
}

TEST(AtomicFile, ReplacesWhatIsThereAndFollowsNoLink) {
    ScratchDir dir;
    const fs::path file = dir.path() / "script.sh";
    ASSERT_TRUE(writeFileAtomically(file, "first\n"));
    EXPECT_EQ(readFile(file), "first\n");
    ASSERT_TRUE(writeFileAtomically(file, "second\n"));
    EXPECT_EQ(readFile(file), "second\n");

    const fs::path elsewhere = dir.writeFile("elsewhere", "untouched\n");
    const fs::path link = dir.path() / "link.sh";
    fs::create_symlink(elsewhere, link);
    ASSERT_TRUE(writeFileAtomically(link, "new\n"));
    EXPECT_FALSE(fs::is_symlink(link));
    EXPECT_EQ(readFile(link), "new\n");
    EXPECT_EQ(readFile(elsewhere), "untouched\n");
}

TEST(AtomicFile, FailsWhereNoFileCanBeAndLeavesNothingBehind) {
    ScratchDir dir;
    const fs::path directory = dir.path() / "taken.sh";
    fs::create_directories(directory / "inside");
    const fs::path underAFile = dir.writeFile("plain", "x") / "script.sh";
    const fs::path missingFolder = dir.path() / "missing/script.sh";
    for (const fs::path& target : {directory, underAFile, missingFolder}) {
        EXPECT_FALSE(writeFileAtomically(target, "#!/bin/sh\n")) << target;
        EXPECT_FALSE(fs::is_regular_file(target)) << target;
    }
    EXPECT_TRUE(fs::is_directory(directory / "inside"));
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(dir.path()))
        left.push_back(entry.path().filename());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<fs::path>{"plain", "taken.sh"})) << "no temporary file is left";
}

// Every run of installHelper in one test: the script path is fixed, and the lock keeps
// other processes' tests off it too.
TEST(InstallHelper, RunsTheScriptElevatedAndTrustsOnlyARootOwnedSetuidCopy) {
    if (!runsAsRoot())
        GTEST_SKIP() << "the script's chown needs root";
    InstallScriptLock lock;
    ScratchDir dir;
    const fs::path script = installScriptPath;
    ASSERT_FALSE(fs::exists(fs::symlink_status(script))) << "a stale " << script;
    const fs::path runs = dir.path() / "runs";
    // Logs its arguments, the script's mode and text, then acts as `tail`.
    const auto standIn = [&](const std::string& name, const std::string& tail) {
        return dir.writeScript(name, "echo \"$*\" >> " + runs.string() + "\nstat -c %a \"$2\" > " +
                                         runs.string() + ".mode\ncp \"$2\" " + runs.string() +
                                         ".script\n" + tail);
    };

    const struct {
        const char* name;
        std::string tail; // empty: no stand-in, the program is missing
        bool result;
        bool installed;
        bool scriptLeft;
    } cases[] = {
        {"accepted", "exec \"$@\"\n", true, true, false},
        {"dismissed prompt", "exit 126\n", false, false, false},
        {"not authorised", "exit 127\n", false, false, false},
        {"copy without set-user-ID", "\"$@\" || exit 1\nchmod u-s \"$INSTALLED\"\n", false, false,
         false},
        {"copy failed", "exit 1\n", false, false, false},
        {"missing elevation program", "", false, false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path installed = dir.path() / c.name / "bin/vorlune_smc_helper";
        const fs::path program =
            c.tail.empty() ? dir.path() / "no/pkexec"
                           : standIn(std::string(c.name) + ".elevate",
                                     "INSTALLED=\"" + installed.string() + "\"\n" + c.tail);
        fs::remove(runs);
        ThermalMonitor thermal(installed.string(), program.string());
        ASSERT_TRUE(thermal.helperPath().has_value()) << "smc_helper is not built";

        EXPECT_EQ(thermal.installHelper(), c.result);
        EXPECT_EQ(thermal.isHelperInstalled(), c.installed);
        EXPECT_EQ(fs::exists(script), c.scriptLeft);
        if (c.tail.empty()) {
            EXPECT_FALSE(fs::exists(installed));
            fs::remove(script);
            continue;
        }
        EXPECT_EQ(readFile(runs), "/bin/sh /tmp/vorlune_install.sh\n");
        EXPECT_EQ(readFile(runs.string() + ".mode"), "755\n");
        EXPECT_EQ(readFile(runs.string() + ".script"),
                  installScriptText(*thermal.helperPath(), installed.string()));
        if (c.installed) {
            struct stat info {};
            ASSERT_EQ(::lstat(installed.c_str(), &info), 0);
            EXPECT_EQ(info.st_mode & 07777, 04755u);
            EXPECT_EQ(info.st_uid, 0u);
            EXPECT_EQ(info.st_gid, 0u);
            EXPECT_EQ(readFile(installed), readFile(*thermal.helperPath()));
        }
        if (!c.result && std::string(c.name) != "copy without set-user-ID") {
            EXPECT_FALSE(fs::exists(installed));
        }
    }

    // A script that cannot be written: nothing is run.
    fs::remove(runs);
    fs::create_directory(script);
    const fs::path installed = dir.path() / "unwritable/bin/vorlune_smc_helper";
    ThermalMonitor thermal(installed.string(),
                           standIn("unwritable.elevate", "exec \"$@\"\n").string());
    EXPECT_FALSE(thermal.installHelper());
    EXPECT_FALSE(fs::exists(runs)) << "the elevation program ran";
    EXPECT_FALSE(fs::exists(installed));
    EXPECT_TRUE(fs::is_directory(script));
    fs::remove(script);
}

} // namespace
