#pragma once

#include <QString>

#include <string_view>

// The text side of an XDG autostart entry (a .desktop file), apart from any file access.
namespace AutostartEntry {

/// Whether an entry with this text starts the program at login: false when its
/// [Desktop Entry] group says Hidden=true or X-GNOME-Autostart-enabled=false.
bool launchesAtLogin(std::string_view text);

/// `program` as one argument of an Exec line: quoted when it holds a reserved
/// character, with '%' doubled and the string escapes applied.
QString execArgument(const QString& program);

/// The entry that starts `execCommand` (already an Exec value) at login.
QString text(const QString& execCommand);

} // namespace AutostartEntry
