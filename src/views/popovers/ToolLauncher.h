#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// A program and its arguments, ready to start.
struct LaunchCommand {
    QString program; ///< absolute path, as found on PATH
    QStringList arguments;

    bool operator==(const LaunchCommand&) const = default;
};

/// Opens one of the desktop's tools for a footer button: the first installed of a list
/// of dedicated programs, else a terminal emulator running a command. Programs are
/// looked up on PATH at the time of the call.
class ToolLauncher {
public:
    /// A terminal emulator and the arguments that make it run the command that follows.
    struct Terminal {
        QString program;
        QStringList runPrefix;
    };

    ToolLauncher(QStringList dedicatedPrograms, QStringList terminalCommand, QString installHint);

    /// The desktop's system monitor, else `top` in a terminal.
    static ToolLauncher systemMonitor();
    /// The desktop's log viewer, else `journalctl -b -e` in a terminal.
    static ToolLauncher logViewer();
    /// The terminal emulators tried, in order.
    static const std::vector<Terminal>& terminals();

    /// What would be started now, or nullopt when nothing fits.
    std::optional<LaunchCommand> command() const;
    /// Starts the command detached; false when nothing fits or it cannot be started.
    bool launch() const;
    /// What to install when nothing fits, for the disabled button's tooltip.
    const QString& installHint() const { return installHint_; }

private:
    QStringList dedicatedPrograms;
    QStringList terminalCommand;
    QString installHint_;
};
