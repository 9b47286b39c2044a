#include "monitors/linux/ChildProcess.h"
#include "ScratchDir.h"
#include "monitors/linux/IgnoreSigpipe.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <string>

namespace {

using namespace std::chrono_literals;

constexpr ChildStreams allInherited{};

// Gone, or dead and waiting for a parent that may never reap it.
bool isGone(pid_t pid) {
    const std::string stat = readFile("/proc/" + std::to_string(pid) + "/stat");
    const size_t afterName = stat.rfind(')');
    return afterName == std::string::npos || stat.compare(afterName, 3, ") Z") == 0;
}

TEST(ChildProcess, StartFailsForMissingOrNonExecutableProgram) {
    ScratchDir dir;
    const auto notExecutable = dir.writeScript("plain", "exit 0\n", 0644);
    EXPECT_EQ(ChildProcess::start("/nonexistent/program", {}, allInherited), nullptr);
    EXPECT_EQ(ChildProcess::start(notExecutable.string(), {}, allInherited), nullptr);
    EXPECT_EQ(ChildProcess::start(dir.path().string(), {}, allInherited), nullptr);
}

TEST(ChildProcess, PassesArgumentsAndCollectsOutputAfterExit) {
    const auto output = ChildProcess::runForOutput(
        "/bin/sh", {"-c", "printf '%s|' \"$0\" \"$@\"; exit 3", "zero", "one two", ""}, 5000ms);
    ASSERT_TRUE(output);
    EXPECT_EQ(*output, "zero|one two||");
}

TEST(ChildProcess, StandardErrorIsDiscarded) {
    const auto output = ChildProcess::runForOutput(
        "/bin/sh", {"-c", "echo noise >&2; readlink /proc/$$/fd/2"}, 5000ms);
    ASSERT_TRUE(output);
    EXPECT_EQ(*output, "/dev/null\n");
}

TEST(ChildProcess, HungChildAndWhatItStartedAreKilled) {
    ScratchDir dir;
    const auto pids = dir.path() / "pids";
    const auto script =
        dir.writeScript("hang", "sleep 300 & echo $! > " + pids.string() + "; echo $$ >> " +
                                    pids.string() + "; echo partial; exec sleep 300\n");
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(ChildProcess::runForOutput(script.string(), {}, 300ms), std::nullopt);
    EXPECT_GE(std::chrono::steady_clock::now() - started, 300ms);

    std::istringstream lines(readFile(pids));
    pid_t background = 0, child = 0;
    ASSERT_TRUE(lines >> background >> child);
    // The child is reaped; its background job is gone once init has reaped it.
    EXPECT_EQ(waitpid(child, nullptr, WNOHANG), -1);
    EXPECT_TRUE(eventually([&] { return isGone(background); }));
}

TEST(ChildProcess, ExitedChildWithOpenOutputDoesNotBlockTheRead) {
    // The background job keeps the output pipe open after the child itself exits.
    ScratchDir dir;
    const auto script = dir.writeScript("leave", "echo answer; sleep 300 >/dev/null 2>&1 &\n"
                                                 "echo $! > " +
                                                     (dir.path() / "pid").string() + "\n");
    const auto output = ChildProcess::runForOutput(script.string(), {}, 5000ms);
    ASSERT_TRUE(output);
    EXPECT_EQ(*output, "answer\n");
    ::kill(std::stoi(readFile(dir.path() / "pid")), SIGKILL);
}

TEST(ChildProcess, PipeEndsAreNotInheritedByOtherChildren) {
    // If the second child inherited the writing end of the first one's input,
    // closing ours would not end the first child's input.
    auto reader = ChildProcess::start(
        "/bin/cat", {}, {ChildStream::pipe, ChildStream::nullDevice, ChildStream::nullDevice});
    ASSERT_NE(reader, nullptr);
    auto bystander = ChildProcess::start("/bin/sleep", {"300"}, allInherited);
    ASSERT_NE(bystander, nullptr);

    reader->inputWriter().reset();
    EXPECT_TRUE(reader->waitForExit(10s));
    EXPECT_TRUE(bystander->isRunning());
    bystander->kill();
    EXPECT_FALSE(bystander->isRunning());
    ASSERT_TRUE(bystander->waitStatus());
    EXPECT_TRUE(WIFSIGNALED(*bystander->waitStatus()));
}

TEST(ChildProcess, ChildStartsWithSigpipeAtDefault) {
    ignoreSigpipe();
    const auto status =
        ChildProcess::runForOutput("/bin/grep", {"SigIgn", "/proc/self/status"}, 5000ms);
    ASSERT_TRUE(status);
    const std::string mask = status->substr(status->find(':') + 1);
    const unsigned long long ignored = std::stoull(mask, nullptr, 16);
    EXPECT_EQ(ignored & (1ULL << (SIGPIPE - 1)), 0u) << *status;
}

TEST(ChildProcess, WriteToGoneReaderFailsWithoutSigpipe) {
    // Default disposition on purpose: the write itself must not raise SIGPIPE.
    signal(SIGPIPE, SIG_DFL);
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    UniqueFd readEnd(fds[0]), writeEnd(fds[1]);
    EXPECT_TRUE(ChildProcess::writeAll(writeEnd.get(), "first\n"));
    readEnd.reset();
    EXPECT_FALSE(ChildProcess::writeAll(writeEnd.get(), "second\n"));
    sigset_t pending;
    sigpending(&pending);
    EXPECT_FALSE(sigismember(&pending, SIGPIPE));
}

TEST(ChildProcess, WritesLargerThanThePipeArriveWhole) {
    ScratchDir dir;
    const auto sink = dir.path() / "sink";
    auto child =
        ChildProcess::start("/bin/sh", {"-c", "cat > " + sink.string()},
                            {ChildStream::pipe, ChildStream::nullDevice, ChildStream::nullDevice});
    ASSERT_NE(child, nullptr);
    const std::string big(1 << 20, 'x');
    EXPECT_TRUE(ChildProcess::writeAll(child->inputWriter().get(), big));
    child->inputWriter().reset();
    child->waitForExit();
    EXPECT_EQ(readFile(sink).size(), big.size());
}

} // namespace
