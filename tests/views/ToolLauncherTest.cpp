// The footer's launchers, looked up on a PATH of stand-in programs that record how
// they were started.
#include "PopoverRig.h"

#include "support/TempDir.h"
#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/ToolLauncher.h"

#include <QToolButton>
#include <gtest/gtest.h>

namespace {

// PATH holds only a scratch folder while the object lives. A stand-in "name" writes
// its arguments to name.ran; "-name" is there but not executable.
struct FakePath {
    explicit FakePath(const QStringList& names) {
        qputenv("PATH", QByteArray::fromStdString(dir.str()));
        for (const QString& each : names)
            if (const std::string name = each.toStdString(); !name.empty())
                dir.writeScript(name.substr(name[0] == '-'), "printf '%s\\n' \"$@\" > \"$0.ran\"\n",
                                name[0] == '-' ? 0644 : 0755);
    }
    ~FakePath() { qputenv("PATH", saved); }

    std::string ran(const std::string& name) const {
        eventually([&] { return !dir.read(name + ".ran").empty(); });
        return dir.read(name + ".ran");
    }

    QByteArray saved = qgetenv("PATH");
    TempDir dir;
};

TEST(ToolLauncher, PicksTheFirstInstalledProgramElseACommandThatIsThereInATerminal) {
    const ToolLauncher monitor = ToolLauncher::systemMonitor(), logs = ToolLauncher::logViewer();
    // What is installed (a leading "-": there, not executable), what runs, and the button.
    const std::tuple<const ToolLauncher&, const char*, std::string, const char*, QString> cases[] =
        {
            {monitor, "lxtask xterm mate-system-monitor", "mate-system-monitor", "",
             "System Monitor"},
            {monitor, "-gnome-system-monitor xterm htop top", "xterm", "-e htop", "htop"},
            {monitor, "xterm x-terminal-emulator top", "x-terminal-emulator", "-e top", "top"},
            {logs, "gnome-terminal journalctl", "gnome-terminal", "-- journalctl -f", "Journal"},
        };
    for (const auto& [launcher, installed, program, arguments, name] : cases) {
        FakePath path(QString::fromLatin1(installed).split(u' '));
        const QString found = QString::fromStdString(path.dir.str() + "/" + program);
        EXPECT_EQ(
            launcher.command(),
            (LaunchCommand{found, QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts),
                           name}));
    }
    // A terminal alone opens nothing worth a button.
    FakePath onlyTerminal({QStringLiteral("xterm")});
    EXPECT_EQ(monitor.command(), std::nullopt);
}

TEST(ToolLauncher, FooterButtonsNameTheToolTheyStartAndHideWithoutOne) {
    PopoverRig rig;
    for (const bool installed : {false, true}) {
        FakePath path(
            QString::fromLatin1(installed ? "plasma-systemmonitor konsole journalctl" : "htop")
                .split(u' '));
        MonitorPopoverView view(rig.monitor, rig.settings, [](SensorType) {});
        auto* activity = view.findChild<QToolButton*>("activityMonitorButton");
        auto* console = view.findChild<QToolButton*>("consoleButton");
        EXPECT_EQ(std::pair(activity->isVisibleTo(&view), console->isVisibleTo(&view)),
                  std::pair(installed, installed));
        if (!installed) {
            EXPECT_FALSE(ToolLauncher::systemMonitor().launch());
            continue;
        }
        EXPECT_EQ(std::pair(activity->text(), console->text()),
                  std::pair(QStringLiteral("System Monitor"), QStringLiteral("Journal")));
        activity->click();
        console->click();
        EXPECT_EQ(path.ran("plasma-systemmonitor"), "\n");
        EXPECT_EQ(path.ran("konsole"), "-e\njournalctl\n-f\n");
    }
}

} // namespace
