// The footer's launchers, looked up on a PATH of stand-in programs.
#include "PopoverRig.h"

#include "views/popovers/MonitorPopoverView.h"
#include "views/popovers/ToolLauncher.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

// Points PATH at a scratch folder for the life of the object.
class FakePath {
public:
    FakePath() : saved(qgetenv("PATH")) { qputenv("PATH", dir.path().toLocal8Bit()); }
    ~FakePath() { qputenv("PATH", saved); }

    // A stand-in that writes its arguments, one a line, to "<name>.ran".
    QString install(const QString& name, bool executable = true) {
        const QString path = dir.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" + ranFile(name).toLocal8Bit() + "\"\n");
        file.close();
        QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        if (executable)
            permissions |= QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
        file.setPermissions(permissions);
        return path;
    }

    QString ranFile(const QString& name) const { return dir.filePath(name + ".ran"); }

    // The arguments the stand-in was started with, once it has run.
    QStringList argumentsOf(const QString& name) const {
        QFile ran(ranFile(name));
        QDeadlineTimer deadline(10000);
        while (!ran.exists() || ran.size() == 0) {
            if (deadline.hasExpired())
                return {"<never ran>"};
            QThread::msleep(20);
        }
        QThread::msleep(50);
        EXPECT_TRUE(ran.open(QIODevice::ReadOnly));
        return QString::fromLocal8Bit(ran.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    QTemporaryDir dir;

private:
    QByteArray saved;
};

TEST(ToolLauncher, PicksTheFirstInstalledProgramElseATerminal) {
    struct Case {
        const char* title;
        ToolLauncher launcher;
        QStringList installed;
        QString program; // empty: nothing fits
        QStringList arguments;
    };
    const Case cases[] = {
        {"first dedicated in order",
         ToolLauncher::systemMonitor(),
         {"lxtask", "xterm", "mate-system-monitor"},
         "mate-system-monitor",
         {}},
        {"dedicated before terminal",
         ToolLauncher::systemMonitor(),
         {"x-terminal-emulator", "gnome-system-monitor"},
         "gnome-system-monitor",
         {}},
        {"top in konsole",
         ToolLauncher::systemMonitor(),
         {"xterm", "konsole"},
         "konsole",
         {"-e", "top"}},
        {"top in xfce4-terminal",
         ToolLauncher::systemMonitor(),
         {"xfce4-terminal"},
         "xfce4-terminal",
         {"-x", "top"}},
        {"debian's alternative first",
         ToolLauncher::systemMonitor(),
         {"xterm", "x-terminal-emulator"},
         "x-terminal-emulator",
         {"-e", "top"}},
        {"nothing", ToolLauncher::systemMonitor(), {"gnome-logs", "htop"}, {}, {}},
        {"ksystemlog", ToolLauncher::logViewer(), {"ksystemlog", "xterm"}, "ksystemlog", {}},
        {"gnome-logs first",
         ToolLauncher::logViewer(),
         {"ksystemlog", "gnome-logs"},
         "gnome-logs",
         {}},
        {"journal in gnome-terminal",
         ToolLauncher::logViewer(),
         {"gnome-terminal", "gnome-system-monitor"},
         "gnome-terminal",
         {"--", "journalctl", "-b", "-e"}},
        {"journal in xterm",
         ToolLauncher::logViewer(),
         {"xterm"},
         "xterm",
         {"-e", "journalctl", "-b", "-e"}},
        {"no log viewer", ToolLauncher::logViewer(), {}, {}, {}},
    };
    for (const auto& c : cases) {
        FakePath path;
        for (const QString& name : c.installed)
            path.install(name);
        const auto command = c.launcher.command();
        if (c.program.isEmpty()) {
            EXPECT_FALSE(command) << c.title;
            EXPECT_FALSE(c.launcher.launch()) << c.title;
            continue;
        }
        ASSERT_TRUE(command) << c.title;
        EXPECT_EQ(*command, (LaunchCommand{path.dir.filePath(c.program), c.arguments})) << c.title;
    }
}

TEST(ToolLauncher, SkipsFilesThatAreNotExecutable) {
    FakePath path;
    path.install("gnome-system-monitor", false);
    path.install("xterm");
    const auto command = ToolLauncher::systemMonitor().command();
    ASSERT_TRUE(command);
    EXPECT_EQ(command->program, path.dir.filePath("xterm"));
}

TEST(ToolLauncher, StartsTheProgramDetached) {
    FakePath path;
    path.install("xterm");
    ASSERT_TRUE(ToolLauncher::logViewer().launch());
    EXPECT_EQ(path.argumentsOf("xterm"), (QStringList{"-e", "journalctl", "-b", "-e"}));
}

TEST(ToolLauncher, FooterButtonsAreDisabledWithAnInstallHintWhenNothingFits) {
    FakePath path;
    PopoverRig rig;
    MonitorPopoverView view(rig.monitor, rig.settings, [](SensorType) {});
    for (auto [name, launcher] : {std::pair{"activityMonitorButton", ToolLauncher::systemMonitor()},
                                  {"consoleButton", ToolLauncher::logViewer()}}) {
        auto* button = view.findChild<QToolButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_FALSE(button->isEnabled()) << name;
        EXPECT_EQ(button->toolTip(), launcher.installHint()) << name;
        EXPECT_TRUE(button->toolTip().contains("Install")) << name;
    }
}

TEST(ToolLauncher, FooterButtonsStartWhatIsInstalled) {
    FakePath path;
    path.install("plasma-systemmonitor");
    path.install("konsole");
    PopoverRig rig;
    MonitorPopoverView view(rig.monitor, rig.settings, [](SensorType) {});
    auto* activity = view.findChild<QToolButton*>("activityMonitorButton");
    auto* console = view.findChild<QToolButton*>("consoleButton");
    ASSERT_TRUE(activity && console);
    EXPECT_TRUE(activity->isEnabled());
    EXPECT_EQ(activity->text(), "Activity Monitor");
    EXPECT_EQ(console->text(), "Console");
    activity->click();
    console->click();
    EXPECT_EQ(path.argumentsOf("plasma-systemmonitor"), QStringList{});
    EXPECT_EQ(path.argumentsOf("konsole"), (QStringList{"-e", "journalctl", "-b", "-e"}));
}

} // namespace
