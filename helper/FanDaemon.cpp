#include "FanDaemon.h"

#include "HelperOutput.h"
#include "SensorLabeller.h"
#include "SysfsAttribute.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

// Signal handlers may only set a flag; the loop does the restoring.
volatile std::sig_atomic_t receivedSignal = 0;

constexpr std::array endingSignals = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};
constexpr int temperatureCheckMilliseconds = 1000;

void recordSignal(int signal) {
    receivedSignal = signal;
}

// Blocks the ending signals outside ppoll, so one arriving between the flag check and
// the wait cannot be missed. Returns the mask to wait with.
sigset_t installSignalHandlers() {
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t ending;
    sigemptyset(&ending);
    struct sigaction action {};
    action.sa_handler = recordSignal;
    sigemptyset(&action.sa_mask);
    for (int signal : endingSignals) {
        sigaction(signal, &action, nullptr);
        sigaddset(&ending, signal);
    }
    sigset_t waitMask;
    sigprocmask(SIG_BLOCK, &ending, &waitMask);
    for (int signal : endingSignals)
        sigdelset(&waitMask, signal);
    return waitMask;
}

std::vector<Failsafe::Limits> limitsOf(const std::vector<WatchedSensor>& sensors) {
    std::vector<Failsafe::Limits> limits;
    for (const WatchedSensor& sensor : sensors)
        limits.push_back(sensor.limits);
    return limits;
}

} // namespace

std::vector<WatchedSensor> openWatchedSensors(const SensorReadings& readings) {
    std::vector<WatchedSensor> cpu;
    std::vector<WatchedSensor> others;
    for (const TemperatureReading& reading : readings.temperatures) {
        if (reading.inputPath.empty())
            continue;
        const int fd = openAttribute(reading.inputPath);
        if (fd < 0)
            continue;
        const bool isCpu = isCpuLabel(reading.label);
        (isCpu ? cpu : others)
            .push_back({fd, Failsafe::limitsFor(reading.critMilliCelsius), isCpu});
    }
    std::vector<WatchedSensor>& unused = cpu.empty() ? cpu : others;
    for (const WatchedSensor& sensor : unused)
        ::close(sensor.fd);
    return cpu.empty() ? others : cpu;
}

FanDaemon::FanDaemon(FanGuard guard, std::vector<WatchedSensor> watched, DaemonRunDir runDir)
    : guard_(std::move(guard)), watched_(std::move(watched)), runDir_(std::move(runDir)),
      failsafe_(limitsOf(watched_)) {}

FanDaemon::~FanDaemon() {
    for (const WatchedSensor& sensor : watched_)
        ::close(sensor.fd);
}

int FanDaemon::run(int input, int output) {
    const sigset_t waitMask = installSignalHandlers();
    if (!writeAll(output, "ready\n"))
        reportError("cannot write the ready line");
    // Nothing may reach the application after the ready line.
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null >= 0) {
        ::dup2(null, output);
        ::close(null);
    }

    std::array<char, 512> buffer{};
    while (true) {
        if (receivedSignal != 0)
            return finish(128 + receivedSignal);
        checkTemperatures();
        pollfd waitFor{input, POLLIN, 0};
        const timespec timeout{temperatureCheckMilliseconds / 1000, 0};
        const int ready = ::ppoll(&waitFor, 1, &timeout, &waitMask);
        if (ready <= 0)
            continue; // timeout or signal; the loop head handles both
        const ssize_t count = ::read(input, buffer.data(), buffer.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (count <= 0)
            return finish(0);
        reader_.append(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        while (const auto line = reader_.nextLine()) {
            if (!handleLine(*line))
                return finish(0);
        }
    }
}

bool FanDaemon::handleLine(std::string_view line) {
    const ParsedCommand parsed = parseCommand(line);
    if (!parsed.command) {
        reportError("refused: " + parsed.error);
        return true;
    }
    const Command& command = *parsed.command;
    const bool setsSpeed =
        command.kind == CommandKind::setFan || command.kind == CommandKind::setAll;
    if (setsSpeed && failsafe_.engaged()) {
        reportError("refused: fans are handed back until the temperature is safe and readable");
        return true;
    }
    switch (command.kind) {
    case CommandKind::quit:
        return false;
    case CommandKind::fanAuto:
        if (command.fanId >= guard_.fanCount())
            reportError("refused: fan id out of range");
        else
            restoreFan(command.fanId);
        return true;
    case CommandKind::setFan:
        if (command.fanId >= guard_.fanCount())
            reportError("refused: fan id out of range");
        else if (!guard_.isControllable(command.fanId))
            reportError("refused: fan " + std::to_string(command.fanId) + " cannot be controlled");
        else
            setFan(command.fanId, command.rpms[0]);
        return true;
    case CommandKind::setAll:
        if (command.rpms.size() > guard_.fanCount()) {
            reportError("refused: more speeds than fans");
            return true;
        }
        // Fans without a control keep their place in the list and are passed over.
        for (std::size_t id = 0; id < command.rpms.size() && !writeFailed_; ++id) {
            if (guard_.isControllable(id))
                setFan(id, command.rpms[id]);
        }
        writeFailed_ = false;
        return true;
    }
    return true;
}

void FanDaemon::setFan(std::size_t id, long long rpm) {
    if (rpm < guard_.minimumRpm(id) && guard_.isControllable(id))
        reportError("fan " + std::to_string(id) + " held at its minimum of " +
                    std::to_string(guard_.minimumRpm(id)) + " RPM");
    switch (guard_.drive(id, rpm)) {
    case FanGuard::DriveResult::driven:
    case FanGuard::DriveResult::notControllable:
        return;
    case FanGuard::DriveResult::saveFailed:
        reportError("refused: cannot read the state of fan " + std::to_string(id));
        return;
    case FanGuard::DriveResult::writeFailed:
        reportError("writing fan " + std::to_string(id) + " failed; handing every fan back");
        restoreAll();
        writeFailed_ = true;
        return;
    }
}

void FanDaemon::checkTemperatures() {
    std::vector<std::optional<long long>> values;
    for (const WatchedSensor& sensor : watched_)
        values.push_back(readAttributeInteger(sensor.fd));
    switch (failsafe_.update(values)) {
    case Failsafe::Change::engagedHot:
        reportError(watchedName() + " too hot: every fan handed back to automatic control");
        restoreAll();
        break;
    case Failsafe::Change::engagedUnreadable:
        reportError("temperature unreadable: every fan handed back to automatic control");
        restoreAll();
        break;
    case Failsafe::Change::released:
        reportError(watchedName() + " cooled down: fan commands accepted again");
        break;
    case Failsafe::Change::none:
        break;
    }
}

bool FanDaemon::restoreFan(std::size_t id) {
    switch (guard_.restore(id)) {
    case FanGuard::RestoreResult::restored:
        return true;
    case FanGuard::RestoreResult::fullSpeed:
        reportError("fan " + std::to_string(id) +
                    " could not be restored; running it at full speed");
        return false;
    case FanGuard::RestoreResult::failed:
        reportError("fan " + std::to_string(id) + " could not be restored nor set to full speed");
        return false;
    }
    return false;
}

bool FanDaemon::restoreAll() {
    bool allRestored = true;
    for (std::size_t id = 0; id < guard_.fanCount(); ++id)
        allRestored = restoreFan(id) && allRestored;
    return allRestored;
}

std::string FanDaemon::watchedName() const {
    return !watched_.empty() && watched_.front().cpu ? "CPU" : "hottest sensor";
}

// The state file is emptied only once every fan is back, so a fan that could not be
// restored is tried again by the next daemon.
int FanDaemon::finish(int status) {
    if (!restoreAll())
        return status == 0 ? 1 : status;
    runDir_.clearStates();
    return status;
}
