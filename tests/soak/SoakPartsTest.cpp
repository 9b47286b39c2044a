#include "GrowthCheck.h"
#include "ProcessFigures.h"
#include "SettingsCommand.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <memory>
#include <mutex>
#include <sstream>
#include <thread>

extern char** environ;

namespace {

// Keeps the compiler from dropping an allocation nobody reads.
void escape(void* pointer) {
    asm volatile("" : : "g"(pointer) : "memory");
}

char processState(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const auto close = text.rfind(')');
    return close == std::string::npos || close + 2 >= text.size() ? '?' : text[close + 2];
}

TEST(ProcessFiguresTest, CountsDescriptorsThreadsChildrenAndHeapAsTheyComeAndGo) {
    const ProcessFigures before = readProcessFigures();
    ASSERT_GT(before.threads, 0);
    ASSERT_GE(before.openFds, 3) << "standard streams at least";
    ASSERT_GE(before.children, 0);

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(readProcessFigures().openFds, before.openFds + 2);
    close(ends[0]);
    close(ends[1]);
    EXPECT_EQ(readProcessFigures().openFds, before.openFds);

    std::mutex lock;
    std::condition_variable wake;
    bool done = false;
    std::thread sleeper([&] {
        std::unique_lock held(lock);
        wake.wait(held, [&] { return done; });
    });
    EXPECT_EQ(readProcessFigures().threads, before.threads + 1);
    {
        std::lock_guard held(lock);
        done = true;
    }
    wake.notify_one();
    sleeper.join();
    EXPECT_EQ(readProcessFigures().threads, before.threads);

    // An exited child nobody reaped is a zombie: it still counts.
    pid_t child = 0;
    char program[] = "/bin/true";
    char* argv[] = {program, nullptr};
    ASSERT_EQ(posix_spawn(&child, program, nullptr, nullptr, argv, environ), 0);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (processState(child) != 'Z' && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_EQ(processState(child), 'Z');
    EXPECT_EQ(readProcessFigures().children, before.children + 1);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(readProcessFigures().children, before.children);

    constexpr std::size_t block = 8 << 20;
    const long long heapBefore = readProcessFigures().heapBytes;
    auto held = std::make_unique<char[]>(block);
    escape(held.get());
    EXPECT_GE(readProcessFigures().heapBytes - heapBefore, static_cast<long long>(block));
    held.reset();
    EXPECT_LT(readProcessFigures().heapBytes - heapBefore, static_cast<long long>(block));
}

TEST(ProcessFiguresTest, ReadsTheProcFields) {
    struct Case {
        const char* stat;
        long parent;
    };
    const Case stats[] = {
        {"4242 (vorlune) S 17 4242 4242 0 -1", 17},
        {"4242 (a b) c) (d) R 99 1 1", 99},
        {"4242 (x) Z 1", 1},
        {"4242 (truncated", -1},
        {"4242 (x) S", -1},
        {"", -1},
    };
    for (const Case& c : stats)
        EXPECT_EQ(parentFromStat(c.stat), c.parent) << c.stat;

    EXPECT_EQ(threadsFromStatus("Name:\tx\nState:\tS\nThreads:\t7\nVmRSS:\t1 kB\n"), 7);
    EXPECT_EQ(threadsFromStatus("Name:\tx\n"), -1);
    EXPECT_EQ(countDirectoryEntries("/nonexistent/vorlune"), -1);
}

TEST(GrowthCheckTest, ReportsOnlyRisesBeyondTheTolerance) {
    const ProcessFigures base{6, 11, 0, 1'000'000};
    const GrowthTolerance tolerance{0, 0, 0, 4096};
    struct Case {
        const char* what;
        ProcessFigures end;
        std::vector<std::string> findings;
    };
    const Case cases[] = {
        {"unchanged", base, {}},
        {"everything fell", {5, 9, 0, 10}, {}},
        {"heap within tolerance", {6, 11, 0, 1'004'096}, {}},
        {"heap beyond",
         {6, 11, 0, 1'004'097},
         {"heap grew from 1000000 to 1004097 (tolerance 4096)"}},
        {"one more descriptor and thread",
         {7, 12, 0, 1'000'000},
         {"threads grew from 6 to 7 (tolerance 0)", "fds grew from 11 to 12 (tolerance 0)"}},
        {"a zombie", {6, 11, 1, 1'000'000}, {"children grew from 0 to 1 (tolerance 0)"}},
        {"unreadable", {6, -1, 0, 1'000'000}, {"fds could not be read"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(growthBeyond(base, c.end, tolerance), c.findings) << c.what;
}

TEST(SettingsCommandTest, SetsAndReadsBackBoolDoubleAndTextSettings) {
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    const QString file = directory.filePath(QStringLiteral("vorlune.conf"));
    AppSettings settings(file);
    struct Case {
        const char* line;
        const char* answer;
    };
    const Case cases[] = {
        {"get persistCPU", "persistCPU=false"},
        {"set persistCPU true", "persistCPU=true"},
        {"set persistCPU yes", "error 'yes' is no value for persistCPU"},
        {"get persistCPU", "persistCPU=true"},
        {"set graphWidth 52.5", "graphWidth=52.5"},
        {"set graphWidth wide", "error 'wide' is no value for graphWidth"},
        {"set styleCPU Graph & Text", "styleCPU=Graph & Text"},
        {"set displayMode Text Only", "error 'Text Only' is no value for displayMode"},
        {"get objectName", "error unknown setting 'objectName'"},
        {"get noSuchKey", "error unknown setting 'noSuchKey'"},
        {"toggle persistCPU", "error unknown command 'toggle'"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(answerSettingsCommand(settings, c.line), c.answer) << c.line;

    AppSettings reader(file);
    EXPECT_TRUE(reader.persistCPU());
    EXPECT_EQ(reader.graphWidth(), 52.5);
    EXPECT_EQ(reader.styleCPU(), QStringLiteral("Graph & Text"));
}

} // namespace
