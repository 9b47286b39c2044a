#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// A program and its arguments, ready to start, and what the user knows it as.
struct LaunchCommand {
    QString program; ///< absolute path, as found on PATH
    QStringList arguments;
    QString name; ///< "System Monitor", "Logs", "htop", ...

    bool operator==(const LaunchCommand&) const = default;
};

/// Opens one of the desktop's tools for a footer button: the first installed of a list
/// of dedicated programs, else the first installed of some terminal commands in a
/// terminal emulator. Programs are looked up on PATH at the time of the call.
class ToolLauncher {
public:
    /// A terminal emulator and the arguments that make it run the command that follows.
    struct Terminal {
        QString program;
        QStringList runPrefix;
    };
    /// A program (dedicated, or run in a terminal) and the name the button shows.
    struct Tool {
        QStringList command;
        QString name;
    };

    ToolLauncher(std::vector<Tool> dedicated, std::vector<Tool> inTerminal);

    /// The desktop's system monitor, else htop (or top) in a terminal.
    static ToolLauncher systemMonitor();
    /// The desktop's log viewer, else `journalctl -f` in a terminal.
    static ToolLauncher logViewer();
    /// The terminal emulators tried, in order.
    static const std::vector<Terminal>& terminals();

    /// What would be started now, or nullopt when nothing fits.
    std::optional<LaunchCommand> command() const;
    /// Starts the command detached; false when nothing fits or it cannot be started.
    bool launch() const;

private:
    std::vector<Tool> dedicated;
    std::vector<Tool> inTerminal;
};
