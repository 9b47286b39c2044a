#include "HelperTicker.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

HelperTicker::HelperTicker(QString helperPath, int periodMilliseconds, QObject* parent)
    : QObject(parent), helperPath(std::move(helperPath)) {
    timer.setInterval(periodMilliseconds);
    connect(&timer, &QTimer::timeout, this, &HelperTicker::spawnHelper);
}

HelperTicker::~HelperTicker() {
    if (child > 0)
        ::kill(child, SIGKILL);
    finishRun();
}

void HelperTicker::start() {
    spawnHelper();
    timer.start();
}

void HelperTicker::spawnHelper() {
    // A run that has not answered within a period is left to finish; ticks never pile up.
    if (child > 0)
        return;
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const QByteArray program = helperPath.toLocal8Bit();
    char all[] = "--all";
    char* argv[] = {const_cast<char*>(program.constData()), all, nullptr};
    const int failed = posix_spawn(&child, program.constData(), &files, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&files);
    ::close(fds[1]);
    if (failed != 0) {
        child = -1;
        ::close(fds[0]);
        return;
    }
    answerFd = fds[0];
    answerNotifier = std::make_unique<QSocketNotifier>(answerFd, QSocketNotifier::Read);
    connect(answerNotifier.get(), &QSocketNotifier::activated, this, &HelperTicker::readAnswer);
}

void HelperTicker::readAnswer() {
    char buffer[16384];
    ssize_t n;
    do {
        n = ::read(answerFd, buffer, sizeof buffer);
    } while (n < 0 && errno == EINTR);
    if (n <= 0)
        finishRun();
}

void HelperTicker::finishRun() {
    answerNotifier.reset();
    if (answerFd >= 0)
        ::close(answerFd);
    answerFd = -1;
    if (child > 0) {
        while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    child = -1;
}
