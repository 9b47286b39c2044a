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
    if (command.kind == CommandKind::quit)
        return false;
    // Every fan a command names must be one of ours before anything is written, so a
    // set-all never moves some fans and then stops at an unknown one.
    std::vector<std::size_t> ids;
    for (const FanValue& fan : command.fans) {
        const std::optional<std::size_t> id = guard_.indexOf(fan.key);
        if (!id) {
            reportError("refused: unknown fan " + fan.key);
            return true;
        }
        ids.push_back(*id);
    }
    if (command.kind == CommandKind::fanAuto) {
        restoreFan(ids[0]);
        return true;
    }
    if (failsafe_.engaged()) {
        reportError("refused: fans are handed back until the temperature is safe and readable");
        return true;
    }
    const bool duty = command.kind == CommandKind::setDuty;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const bool accepted = duty ? guard_.takesDuty(ids[i]) : guard_.takesSpeed(ids[i]);
        if (!accepted) {
            reportError("refused: fan " + command.fans[i].key +
                        (!guard_.isControllable(ids[i]) ? " cannot be controlled"
                         : duty                         ? " takes no duty"
                                                        : " reports no maximum; set its duty"));
            return true;
        }
    }
    for (std::size_t i = 0; i < ids.size() && !writeFailed_; ++i)
        setFan(ids[i], command.fans[i].value, duty);
    writeFailed_ = false;
    return true;
}

void FanDaemon::setFan(std::size_t id, long long value, bool duty) {
    const std::string& key = guard_.keyOf(id);
    const long long floor = duty ? guard_.minimumDutyPercent(id) : guard_.minimumRpm(id);
    if (value < floor)
        reportError("fan " + key + " held at its minimum of " + std::to_string(floor) +
                    (duty ? " %" : " RPM"));
    switch (duty ? guard_.driveDuty(id, value) : guard_.drive(id, value)) {
    case FanGuard::DriveResult::driven:
    case FanGuard::DriveResult::notControllable:
        return;
    case FanGuard::DriveResult::saveFailed:
        reportError("refused: cannot read the state of fan " + key);
        return;
    case FanGuard::DriveResult::writeFailed:
        reportError("writing fan " + key + " failed; handing every fan back");
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
        reportError("fan " + guard_.keyOf(id) + " could not be restored; running it at full speed");
        return false;
    case FanGuard::RestoreResult::failed:
        reportError("fan " + guard_.keyOf(id) + " could not be restored nor set to full speed");
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
