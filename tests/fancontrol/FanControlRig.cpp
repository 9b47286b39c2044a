#include "FanControlRig.h"

#include "settings/SystemColorScheme.h"
#include "views/popovers/FanControlQueue.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QThreadPool>
#include <QWidget>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

namespace {

SamplingMonitors monitorsInstallingTo(const std::filesystem::path& installed,
                                      const std::filesystem::path& elevation) {
    SamplingMonitors monitors;
    monitors.thermalMonitor =
        std::make_unique<ThermalMonitor>(installed.string(), elevation.string());
    return monitors;
}

} // namespace

FanControlRig::FanControlRig()
    : settings(QString::fromStdString((dir.path() / "vorlune.conf").string()),
               std::make_unique<SystemColorScheme>(QString())),
      monitor(monitorsInstallingTo(installed, elevation), false) {}

FanControlRig::~FanControlRig() {
    fanControlQueue(monitor).waitForDone();
}

void FanControlRig::installStandIn(const std::string& body, mode_t mode) const {
    dir.writeScript(installed, body, mode);
    if (::chown(installed.c_str(), 0, 0) != 0 || ::chmod(installed.c_str(), mode) != 0)
        throw std::runtime_error("cannot make the stand-in root-owned");
}

void FanControlRig::installRecorder() const {
    installStandIn("[ \"$1\" = --daemon ] || exit 1\n"
                   "date +%s%N > " +
                   readyAt.string() +
                   "\n"
                   "echo ready\n"
                   "while IFS= read -r line; do\n"
                   "  echo \"$(date +%s%N) $line\" >> " +
                   commands.string() +
                   "\n"
                   "done\n");
}

std::vector<std::string> FanControlRig::recordedLines() const {
    std::istringstream text(readFile(commands));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line.substr(line.find(' ') + 1));
    return lines;
}

long long FanControlRig::nanosecondsFromReadyTo(const std::string& wanted) const {
    const long long ready = std::stoll(readFile(readyAt));
    std::istringstream text(readFile(commands));
    for (std::string line; std::getline(text, line);) {
        const auto space = line.find(' ');
        if (line.substr(space + 1) == wanted)
            return std::stoll(line.substr(0, space)) - ready;
    }
    return -1;
}

void FanControlRig::publishFans(const std::vector<FanInfo>& fans) {
    SystemSample sample;
    sample.thermal.fans = fans;
    monitor.publish(sample);
}

void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

bool settleUntil(const std::function<bool()>& condition) {
    return eventually(
        [&] {
            settle();
            return condition();
        },
        std::chrono::seconds(20));
}

QStringList shownTexts(const QWidget* root) {
    QStringList texts;
    for (const QWidget* widget : root->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(root))
            continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts << label->text();
        else if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            texts << button->text();
    }
    return texts;
}

InstallScriptLock::InstallScriptLock()
    : fd(::open("/tmp/vorlune-install-script-test.lock", O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (fd < 0 || ::flock(fd, LOCK_EX) != 0)
        throw std::runtime_error("cannot lock the install script path");
}

InstallScriptLock::~InstallScriptLock() {
    ::close(fd);
}

bool runsAsRoot() {
    return ::geteuid() == 0;
}
