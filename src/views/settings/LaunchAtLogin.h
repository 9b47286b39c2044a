#pragma once

#include <QString>

#include <optional>

/// Launch at login as an XDG autostart entry, <configDir>/autostart/vorlune.desktop.
/// On means the entry exists and neither hides itself nor is switched off.
class LaunchAtLogin {
public:
    /// The user's own config folder ($XDG_CONFIG_HOME, else ~/.config) and the
    /// running executable.
    LaunchAtLogin();
    /// `configDir` holds the autostart folder; `executablePath` is the program the
    /// entry starts.
    LaunchAtLogin(QString configDir, QString executablePath);

    QString entryPath() const;
    bool isEnabled() const;
    /// Writes the entry (on) or removes it (off). The error's description on failure.
    std::optional<QString> setEnabled(bool enabled) const;

    /// "vorlune" when that name on PATH is this very executable, so an upgrade in
    /// place keeps working; else the executable's absolute path.
    QString execCommand() const;

private:
    std::optional<QString> writeEntry() const;
    std::optional<QString> removeEntry() const;

    QString configDir;
    QString executablePath;
};
