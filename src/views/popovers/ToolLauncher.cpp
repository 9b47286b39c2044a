#include "ToolLauncher.h"

#include <QProcess>
#include <QStandardPaths>

ToolLauncher::ToolLauncher(std::vector<Tool> dedicated, std::vector<Tool> inTerminal)
    : dedicated(std::move(dedicated)), inTerminal(std::move(inTerminal)) {}

ToolLauncher ToolLauncher::systemMonitor() {
    return ToolLauncher({{{"gnome-system-monitor"}, "System Monitor"},
                         {{"plasma-systemmonitor"}, "System Monitor"},
                         {{"mate-system-monitor"}, "System Monitor"},
                         {{"xfce4-taskmanager"}, "Task Manager"},
                         {{"ksysguard"}, "System Monitor"},
                         {{"lxtask"}, "Task Manager"}},
                        {{{"htop"}, "htop"}, {{"top"}, "top"}});
}

ToolLauncher ToolLauncher::logViewer() {
    return ToolLauncher({{{"gnome-logs"}, "Logs"}, {{"ksystemlog"}, "System Log"}},
                        {{{"journalctl", "-f"}, "Journal"}});
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
    for (const Tool& tool : dedicated) {
        const QString path = QStandardPaths::findExecutable(tool.command.front());
        if (!path.isEmpty())
            return LaunchCommand{path, tool.command.mid(1), tool.name};
    }
    for (const Terminal& terminal : terminals()) {
        const QString path = QStandardPaths::findExecutable(terminal.program);
        if (path.isEmpty())
            continue;
        // Only a command that is there: a terminal that opens on "not found" helps nobody.
        for (const Tool& tool : inTerminal) {
            if (!QStandardPaths::findExecutable(tool.command.front()).isEmpty())
                return LaunchCommand{path, terminal.runPrefix + tool.command, tool.name};
        }
        return std::nullopt;
    }
    return std::nullopt;
}

bool ToolLauncher::launch() const {
    const auto found = command();
    return found && QProcess::startDetached(found->program, found->arguments);
}
