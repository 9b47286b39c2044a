#include "support/FakeMachines.h"
#include "support/FakeSysfs.h"
#include "support/HelperProcess.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const std::string refusal =
    "smc_helper: --sysfs-root is refused when running with raised privileges\n";

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The value of "Field:" in /proc/<pid>/status, tabs and all.
std::string statusField(const std::string& pid, const std::string& field) {
    std::istringstream status(fileText("/proc/" + pid + "/status"));
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field + ":", 0) == 0)
            return line.substr(field.size() + 1);
    }
    return {};
}

std::string trimmed(std::string text) {
    text.erase(0, text.find_first_not_of(" \t"));
    return text;
}

// Mount options of the mount that holds `path` (the longest matching mount point).
std::string mountOptions(const std::string& path) {
    std::istringstream mounts(fileText("/proc/self/mountinfo"));
    std::string best;
    std::string options;
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream fields(line);
        std::string id, parent, device, root, mountPoint, mountOpts;
        fields >> id >> parent >> device >> root >> mountPoint >> mountOpts;
        const bool contains =
            path == mountPoint || path.rfind(mountPoint == "/" ? "/" : mountPoint + "/", 0) == 0;
        if (contains && mountPoint.size() >= best.size()) {
            best = mountPoint;
            options = mountOpts;
        }
    }
    return options;
}

bool hasOption(const std::string& options, const std::string& option) {
    std::istringstream list(options);
    for (std::string item; std::getline(list, item, ',');) {
        if (item == option)
            return true;
    }
    return false;
}

/// A fresh 0755 directory on a file system that honours setuid, or "" with `why`.
std::string setuidCapableDirectory(std::string& why) {
    for (const std::string& parent : {std::string("/tmp"), std::string(VORLUNE_BINARY_DIR)}) {
        std::string pattern = parent + "/setuid-test-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            continue;
        char resolved[PATH_MAX];
        if (realpath(pattern.c_str(), resolved) != nullptr &&
            !hasOption(mountOptions(resolved), "nosuid") && chmod(resolved, 0755) == 0)
            return resolved;
        fs::remove_all(pattern);
    }
    why = "neither /tmp nor the build directory is on a file system without nosuid";
    return {};
}

bool installSetuidRoot(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    return !error && chown(to.c_str(), 0, 0) == 0 && chmod(to.c_str(), 04755) == 0;
}

std::vector<std::string> asNobody(const std::vector<std::string>& command) {
    std::vector<std::string> argv = {"setpriv", "--reuid=nobody", "--regid=nogroup",
                                     "--clear-groups"};
    argv.insert(argv.end(), command.begin(), command.end());
    return argv;
}

class SetuidHelper : public ::testing::Test {
protected:
    void SetUp() override {
        if (getuid() != 0)
            GTEST_SKIP() << "making a setuid-root copy needs root";
        if (trimmed(statusField("self", "NoNewPrivs")) != "0")
            GTEST_SKIP() << "no_new_privs is set on the test process, so setuid cannot take effect";
        if (access("/usr/bin/setpriv", X_OK) != 0)
            GTEST_SKIP() << "setpriv is not installed";
        std::string why;
        dir_ = setuidCapableDirectory(why);
        if (dir_.empty())
            GTEST_SKIP() << why;
        helper_ = dir_ + "/vorlune_smc_helper";
        ASSERT_TRUE(installSetuidRoot(helperBinary(), helper_));
        // Whether setuid really works here (user namespaces, seccomp, LSMs can stop it):
        // a setuid-root copy of id(1) must report euid 0 when run as nobody.
        const std::string probe = dir_ + "/id";
        ASSERT_TRUE(installSetuidRoot("/usr/bin/id", probe));
        const HelperResult id = runProgram("/usr/bin/setpriv", asNobody({probe, "-u"}));
        if (id.output != "0\n")
            GTEST_SKIP() << "setuid does not take effect here: a setuid-root id -u run as "
                            "nobody printed \""
                         << id.output << "\" " << id.errors;
    }
    void TearDown() override {
        if (!dir_.empty())
            fs::remove_all(dir_);
    }

    std::string dir_;
    std::string helper_;
};

TEST_F(SetuidHelper, RefusesSysfsRootWithItsOwnMessage) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    for (const char* mode : {"--all", "--daemon"}) {
        const HelperResult result =
            runProgram("/usr/bin/setpriv", asNobody({helper_, mode, "--sysfs-root", sysfs.root()}));
        EXPECT_EQ(result.exitStatus, 2) << mode;
        EXPECT_EQ(result.errors, refusal) << mode;
        EXPECT_EQ(result.output, "") << mode;
    }
}

TEST_F(SetuidHelper, DaemonRunsAsTheCallingUserWithNoWayBack) {
    DaemonProcess daemon("/usr/bin/setpriv", asNobody({helper_, "--daemon"}));
    ASSERT_EQ(daemon.readyLine(), "ready");
    const std::string pid = std::to_string(daemon.pid());
    EXPECT_EQ(statusField(pid, "Uid"), "\t65534\t65534\t65534\t65534");
    EXPECT_EQ(statusField(pid, "Gid"), "\t65534\t65534\t65534\t65534");
    EXPECT_EQ(trimmed(statusField(pid, "NoNewPrivs")), "1");
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
}

TEST_F(SetuidHelper, OneShotStillAnswersWhenSetuid) {
    const HelperResult result = runProgram("/usr/bin/setpriv", asNobody({helper_, "--all"}));
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output.rfind("{\"temperatures\":[", 0), 0u) << result.output;
}

TEST(HelperHardening, DaemonKeepsOnlyItsSysfsFilesAndNoEnvironment) {
    FakeSysfs sysfs;
    buildIntelDesktop(sysfs);
    // A descriptor and a variable the daemon must not carry along.
    const int leaked = open("/etc/passwd", O_RDONLY);
    ASSERT_GE(leaked, 3);
    setenv("VORLUNE_TEST_SECRET", "1", 1);
    DaemonProcess daemon(sysfs.root());
    close(leaked);
    unsetenv("VORLUNE_TEST_SECRET");
    ASSERT_EQ(daemon.readyLine(), "ready");

    const std::string proc = "/proc/" + std::to_string(daemon.pid());
    const std::string devices = fs::canonical(sysfs.root()).string() + "/sys/devices/";
    // Right after its ready line the daemon swaps its output for /dev/null; look once
    // that swap is done (fd 1 is /dev/null and the descriptor it came through is closed).
    const auto outputSwapped = [&] {
        int nulls = 0;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(proc + "/fd", error)) {
            if (fs::read_symlink(entry.path(), error) == "/dev/null")
                nulls += entry.path().filename() == "1" ? 1 : 2;
        }
        return nulls == 1;
    };
    EXPECT_TRUE(eventually(outputSwapped));
    int sysfsFiles = 0;
    for (const auto& entry : fs::directory_iterator(proc + "/fd")) {
        const int fd = std::stoi(entry.path().filename().string());
        const std::string target = fs::read_symlink(entry.path()).string();
        if (fd == 1) {
            EXPECT_EQ(target, "/dev/null") << "standard output after the ready line";
        } else if (fd > 2) {
            EXPECT_EQ(target.rfind(devices, 0), 0u) << "fd " << fd << " -> " << target;
            ++sysfsFiles;
        }
    }
    // pwm1, pwm1_enable, pwm2, pwm2_enable and the three coretemp inputs.
    EXPECT_EQ(sysfsFiles, 7);
    const std::string environment = fileText(proc + "/environ");
    EXPECT_EQ(environment.find_first_not_of('\0'), std::string::npos) << environment;
    EXPECT_EQ(fs::read_symlink(proc + "/cwd"), "/");
    EXPECT_EQ(trimmed(statusField(std::to_string(daemon.pid()), "Umask")), "0077");
    EXPECT_EQ(trimmed(statusField(std::to_string(daemon.pid()), "NoNewPrivs")), "1");
    daemon.send("quit\n");
    EXPECT_EQ(daemon.waitForExit(), 0);
}

TEST(HelperHardening, RefusesToStartWithoutAProgramName) {
    // Linux turns an empty argv into {""}; both are refused.
    for (const std::vector<std::string>& argv :
         {std::vector<std::string>{}, std::vector<std::string>{"", "--all"}}) {
        const HelperResult result = runProgram(helperBinary(), argv);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "smc_helper: refusing to start without a program name\n");
    }
}

} // namespace
