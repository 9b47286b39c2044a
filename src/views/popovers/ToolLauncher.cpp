#include "ToolLauncher.h"

#include <QProcess>
#include <QStandardPaths>

ToolLauncher::ToolLauncher(QStringList dedicatedPrograms, QStringList terminalCommand,
                           QString installHint)
    : dedicatedPrograms(std::move(dedicatedPrograms)), terminalCommand(std::move(terminalCommand)),
      installHint_(std::move(installHint)) {}

ToolLauncher ToolLauncher::systemMonitor() {
    return ToolLauncher({"gnome-system-monitor", "plasma-systemmonitor", "ksysguard",
                         "xfce4-taskmanager", "mate-system-monitor", "lxtask"},
                        {"top"},
                        "Install a system monitor such as gnome-system-monitor or "
                        "plasma-systemmonitor, or a terminal emulator such as xterm.");
}

ToolLauncher ToolLauncher::logViewer() {
    return ToolLauncher({"gnome-logs", "ksystemlog"}, {"journalctl", "-b", "-e"},
                        "Install a log viewer such as gnome-logs or ksystemlog, or a terminal "
                        "emulator such as xterm.");
}

const std::vector<ToolLauncher::Terminal>& ToolLauncher::terminals() {
    // Each terminal's own way of taking a command with its arguments.
    static const std::vector<Terminal> list{
        {"x-terminal-emulator", {"-e"}}, {"gnome-terminal", {"--"}}, {"konsole", {"-e"}},
        {"xfce4-terminal", {"-x"}},      {"xterm", {"-e"}},
    };
    return list;
}

std::optional<LaunchCommand> ToolLauncher::command() const {
    for (const QString& name : dedicatedPrograms) {
        const QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return LaunchCommand{path, {}};
    }
    for (const Terminal& terminal : terminals()) {
        const QString path = QStandardPaths::findExecutable(terminal.program);
        if (!path.isEmpty())
            return LaunchCommand{path, terminal.runPrefix + terminalCommand};
    }
    return std::nullopt;
}

bool ToolLauncher::launch() const {
    const auto found = command();
    return found && QProcess::startDetached(found->program, found->arguments);
}
