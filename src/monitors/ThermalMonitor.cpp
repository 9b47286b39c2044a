#include "ThermalMonitor.h"

#include "ThermalAnswerDecoder.h"
#include "linux/ChildProcess.h"
#include "linux/HelperLocation.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

namespace {

// A healthy helper answers in about a millisecond; a hung one must not stall sampling.
constexpr std::chrono::milliseconds oneShotLimit{1500};
constexpr std::chrono::seconds handshakeLimit{15};
constexpr std::chrono::milliseconds handshakeRetryPause{100};
constexpr std::chrono::milliseconds quitLimit{2000};

std::string formatRpm(double rpm) {
    char text[64];
    std::snprintf(text, sizeof text, "%.0f", rpm);
    return text;
}

bool holdsCompleteLine(const std::string& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return !utf8.hasError() && text.contains(QLatin1Char('\n'));
}

// Waits until the daemon has written one whole line, or the limit has passed, and
// returns it: "ready", or "refused: <reason>" from a daemon that will not run.
std::string awaitReadyLine(int output) {
    const auto deadline = std::chrono::steady_clock::now() + handshakeLimit;
    std::string received;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        const PipeChunk chunk = ChildProcess::readChunk(output, left);
        if (chunk.kind == PipeChunk::Kind::data) {
            received += chunk.bytes;
            if (holdsCompleteLine(received))
                return received.substr(0, received.find('\n'));
        } else if (chunk.kind == PipeChunk::Kind::endOfFile) {
            std::this_thread::sleep_for(handshakeRetryPause);
        }
    }
    return {};
}

constexpr std::string_view refusalPrefix = "refused: ";

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
    return locateHelperFrom(executableDirectory().value_or(std::string()),
                            VORLUNE_BUILD_HELPER_PATH);
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

bool ThermalMonitor::startDaemon() {
    std::lock_guard lock(daemonLock);
    if (daemon_ && daemon_->process && daemon_->process->isRunning())
        return true;
    if (!isHelperInstalled())
        return false;
    std::unique_ptr<ChildProcess> process =
        ChildProcess::start(installedHelperPath_, {"--daemon"},
                            {ChildStream::pipe, ChildStream::pipe, ChildStream::nullDevice});
    if (!process)
        return false;

    // After the handshake the daemon's output is never read again.
    const UniqueFd output = std::move(process->outputReader());
    daemon_ = std::make_unique<Daemon>();
    daemon_->input = std::move(process->inputWriter());
    daemon_->process = std::move(process);
    const std::string firstLine = awaitReadyLine(output.get());
    daemonRefusal_ = firstLine.starts_with(refusalPrefix) ? firstLine.substr(refusalPrefix.size())
                                                          : std::string();
    if (!daemonRefusal_.empty()) {
        qWarning("Fan control daemon refused to run: %s", daemonRefusal_.c_str());
        daemon_->input.reset(); // a refused daemon ends when its input closes
        daemon_->process->waitForExit(quitLimit);
        daemon_.reset();
        return false;
    }
    return daemon_->process->isRunning();
}

std::string ThermalMonitor::daemonRefusal() {
    std::lock_guard lock(daemonLock);
    return daemonRefusal_;
}

bool ThermalMonitor::sendCommand(std::string_view command) {
    std::lock_guard lock(daemonLock);
    if (!daemon_ || !daemon_->input || !daemon_->process || !daemon_->process->isRunning())
        return false;
    std::string line(command);
    line += '\n';
    return ChildProcess::writeAll(daemon_->input.get(), line);
}

bool ThermalMonitor::setFanSpeed(long long fanId, double rpm) {
    return sendCommand("set-fan " + std::to_string(fanId) + " " + formatRpm(rpm));
}

bool ThermalMonitor::setAllFans(const std::map<long long, double>& rpmByFan) {
    if (rpmByFan.empty())
        return true;
    const long long highest = rpmByFan.rbegin()->first;
    if (highest < 0)
        qFatal("setAllFans: fan ids must not be negative (largest is %lld)", highest);
    std::string line = "set-all";
    for (long long id = 0; id <= highest; ++id) {
        const auto entry = rpmByFan.find(id);
        line += ' ';
        line += formatRpm(entry == rpmByFan.end() ? 0.0 : entry->second);
    }
    return sendCommand(line);
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
}

bool ThermalMonitor::isDaemonRunning() {
    // The lock is held through a start's handshake of up to 15 s; the main thread asks
    // this and must not wait that long. Whoever holds it has a daemon or is starting one.
    std::unique_lock lock(daemonLock, std::try_to_lock);
    if (!lock)
        return true;
    return daemon_ && daemon_->process && daemon_->process->isRunning();
}
