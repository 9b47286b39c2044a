#include "ThermalMonitor.h"

#include "ThermalAnswerDecoder.h"
#include "linux/ChildProcess.h"
#include "linux/HelperLocation.h"
#include "linux/ResidentHelper.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <sys/wait.h>
#include <thread>

namespace {

// A healthy helper answers in about a millisecond; a hung one must not stall sampling.
constexpr std::chrono::milliseconds oneShotLimit{1500};
constexpr std::chrono::seconds handshakeLimit{15};
constexpr std::chrono::milliseconds quitLimit{2000};

std::string formatRpm(double rpm) {
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", rpm);
    return text;
}

bool isValidUtf8(const std::string& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    utf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return !utf8.hasError();
}

// Waits until the daemon has written one whole line, has closed its output (it died or
// ended), or the limit has passed, and returns the line: "ready", or "refused:
// <reason>" from a daemon that will not run. A line that is not text counts as none.
std::string awaitReadyLine(int output) {
    const auto deadline = std::chrono::steady_clock::now() + handshakeLimit;
    std::string received;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        const PipeChunk chunk = ChildProcess::readChunk(output, left);
        if (chunk.kind == PipeChunk::Kind::data) {
            received += chunk.bytes;
            const std::size_t end = received.find('\n');
            if (end != std::string::npos) {
                received.resize(end);
                return isValidUtf8(received) ? received : std::string();
            }
        } else if (chunk.kind == PipeChunk::Kind::endOfFile) {
            return {};
        }
    }
    return {};
}

constexpr std::string_view refusalPrefix = "refused: ";

#ifdef VORLUNE_BUILD_HELPER_PATH
constexpr const char* buildTreeHelper = VORLUNE_BUILD_HELPER_PATH;
#else
constexpr const char* buildTreeHelper = ""; // release builds look beside the executable only
#endif

} // namespace

struct ThermalMonitor::Daemon {
    std::unique_ptr<ChildProcess> process; // the daemon, if one was started
    UniqueFd input;                        // the writing end of its standard input
};

ThermalMonitor::ThermalMonitor(std::string installedHelperPath, std::string elevationProgram)
    : installedHelperPath_(std::move(installedHelperPath)),
      elevationProgram_(std::move(elevationProgram)), helperPath_(locateHelper()) {}

ThermalMonitor::~ThermalMonitor() {
    stopDaemon();
}

std::optional<std::string> ThermalMonitor::locateHelper() {
    return locateHelperFrom(executableDirectory().value_or(std::string()), buildTreeHelper);
}

bool ThermalMonitor::isHelperInstalled() const {
    return isExecutableFile(installedHelperPath_) && isRootOwnedSetuid(installedHelperPath_);
}

ThermalReadings ThermalMonitor::readAll(const std::string& path) const {
    const std::optional<std::string> answer =
        ChildProcess::runForOutput(path, {"--all"}, oneShotLimit);
    if (!answer)
        return emptyThermalReadings;
    return decodeThermalAnswer(*answer);
}

ThermalReadings ThermalMonitor::readResident(const std::string& path) {
    if (!resident_)
        resident_ = std::make_unique<ResidentHelper>(path);
    const ResidentHelper::Reply reply = resident_->request(oneShotLimit);
    switch (reply.outcome) {
    case ResidentHelper::Outcome::answered:
        return decodeThermalAnswer(reply.answer);
    case ResidentHelper::Outcome::failed:
        return emptyThermalReadings;
    case ResidentHelper::Outcome::unavailable:
        break;
    }
    return readAll(path);
}

bool ThermalMonitor::startDaemon() {
    std::lock_guard lock(daemonLock);
    if (daemon_ && daemon_->process && daemon_->process->isRunning())
        return true;
    if (!isHelperInstalled())
        return false;
    std::unique_ptr<ChildProcess> process =
        ChildProcess::start(installedHelperPath_, {"--daemon"},
                            {ChildStream::pipe, ChildStream::pipe, ChildStream::nullDevice});
    if (!process) {
        recordProblem("the sensor helper could not be started");
        return false;
    }

    // After the handshake the daemon's output is never read again.
    const UniqueFd output = std::move(process->outputReader());
    daemon_ = std::make_unique<Daemon>();
    daemon_->input = std::move(process->inputWriter());
    daemon_->process = std::move(process);
    const std::string firstLine = awaitReadyLine(output.get());
    // "refused: <reason>" is kept as the daemon said it.
    const std::string problem = firstLine.starts_with(refusalPrefix) ? firstLine
                                : firstLine != "ready" ? "the fan daemon did not start"
                                                       : std::string();
    recordProblem(problem);
    if (!problem.empty()) {
        daemon_->input.reset(); // a refused daemon ends when its input closes
        if (!daemon_->process->waitForExit(quitLimit))
            ::kill(daemon_->process->pid(), SIGTERM);
        daemon_.reset();
        return false;
    }
    daemonUp_ = true;
    return true;
}

std::string ThermalMonitor::daemonProblem() {
    std::lock_guard lock(problemLock);
    return daemonProblem_;
}

// Under a lock of its own: the main thread reads it while a start or a restore holds
// the daemon's lock for as long as a handshake takes.
void ThermalMonitor::recordProblem(const std::string& problem) {
    if (!problem.empty())
        qWarning("Fan control daemon: %s", problem.c_str());
    std::lock_guard lock(problemLock);
    daemonProblem_ = problem;
}

bool ThermalMonitor::checkDaemon() {
    std::unique_lock lock(daemonLock, std::try_to_lock);
    if (!lock || !daemon_ || !daemon_->process || daemon_->process->isRunning())
        return false;
    const std::optional<int> status = daemon_->process->waitStatus();
    daemon_.reset();
    daemonUp_ = false;
    std::string problem = "the fan daemon stopped unexpectedly";
    if (status && WIFSIGNALED(*status))
        problem += " (signal " + std::to_string(WTERMSIG(*status)) + ")";
    else if (status && WIFEXITED(*status))
        problem += " (exit status " + std::to_string(WEXITSTATUS(*status)) + ")";
    recordProblem(problem);
    // A daemon that was killed could not hand its fans back; a new one restores them
    // from the state file the dead one left, and ends at once.
    std::unique_ptr<ChildProcess> restorer =
        ChildProcess::start(installedHelperPath_, {"--daemon"},
                            {ChildStream::pipe, ChildStream::pipe, ChildStream::nullDevice});
    if (restorer) {
        const UniqueFd output = std::move(restorer->outputReader());
        UniqueFd input = std::move(restorer->inputWriter());
        const bool restored = awaitReadyLine(output.get()) == "ready";
        ChildProcess::writeAll(input.get(), "quit\n");
        input.reset();
        if (!restorer->waitForExit(quitLimit))
            ::kill(restorer->pid(), SIGTERM);
        if (restored)
            recordProblem(problem + "; the fans were handed back to automatic control");
    }
    return true;
}

bool ThermalMonitor::sendCommand(std::string_view command) {
    std::lock_guard lock(daemonLock);
    if (!daemon_ || !daemon_->input || !daemon_->process || !daemon_->process->isRunning())
        return false;
    std::string line(command);
    line += '\n';
    return ChildProcess::writeAll(daemon_->input.get(), line);
}

bool ThermalMonitor::setFanSpeed(const std::string& fanKey, double rpm) {
    return sendCommand("set-fan " + fanKey + " " + formatRpm(rpm));
}

bool ThermalMonitor::setFanDuty(const std::string& fanKey, double percent) {
    return sendCommand("set-duty " + fanKey + " " + formatRpm(percent));
}

bool ThermalMonitor::setAllFans(const std::map<std::string, double>& rpmByFan) {
    if (rpmByFan.empty())
        return true;
    std::string line = "set-all";
    for (const auto& [key, rpm] : rpmByFan)
        line += ' ' + key + '=' + formatRpm(rpm);
    return sendCommand(line);
}

bool ThermalMonitor::driveFans(const std::vector<FanDrive>& drives) {
    std::map<std::string, double> speeds;
    bool sent = true;
    for (const FanDrive& drive : drives) {
        if (drive.kind == FanDrive::Kind::speed)
            speeds[drive.key] = drive.value;
        else if (drive.kind == FanDrive::Kind::duty)
            sent = setFanDuty(drive.key, drive.value) && sent;
    }
    return setAllFans(speeds) && sent;
}

void ThermalMonitor::stopDaemon() {
    std::lock_guard lock(daemonLock);
    if (!daemon_)
        return;
    if (daemon_->input) {
        ChildProcess::writeAll(daemon_->input.get(), "quit\n");
        daemon_->input.reset();
    }
    // A daemon that does not take "quit" is asked again with SIGTERM, which it also
    // answers by handing every fan back. It is never killed (that would leave its fans
    // as they are) and never waited on for long: the caller may be the main thread.
    if (daemon_->process && !daemon_->process->waitForExit(quitLimit)) {
        ::kill(daemon_->process->pid(), SIGTERM);
        if (!daemon_->process->waitForExit(quitLimit))
            qWarning("Fan control daemon %d did not end; its fans may still be manual",
                     static_cast<int>(daemon_->process->pid()));
    }
    daemon_.reset();
    daemonUp_ = false;
}

bool ThermalMonitor::isDaemonRunning() {
    // The lock is held through a start's handshake of up to 15 s; the main thread asks
    // this and must not wait that long. While it is held the last known state answers.
    std::unique_lock lock(daemonLock, std::try_to_lock);
    if (!lock)
        return daemonUp_;
    return daemon_ && daemon_->process && daemon_->process->isRunning();
}
