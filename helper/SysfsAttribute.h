#pragma once

#include <optional>
#include <string>
#include <string_view>

// Access to single sysfs attribute files. Only whitelisted names are ever opened,
// never through a symlink, and only when they are regular files.

/// Whether `name` (a file name, no directory) is one of the attributes the helper uses.
bool isAllowedAttribute(std::string_view name);

/// Opens the attribute at `path` with O_NOFOLLOW, read-only or (with `forWriting`)
/// read-write. Returns -1 when the name is not whitelisted, the open fails, or a file
/// opened for writing is not a regular file.
int openAttribute(const std::string& path, bool forWriting = false);

/// The same for the attribute `name` of the open directory `dirFd`.
int openAttributeAt(int dirFd, std::string_view name, bool forWriting = false);

/// A sysfs integer ("45000\n", "-5"); nullopt for anything else.
std::optional<long long> parseAttributeInteger(std::string_view text);

/// The first line of the attribute `name` of the directory `dirFd`, without trailing
/// white space.
std::optional<std::string> readAttributeText(int dirFd, std::string_view name);
std::optional<long long> readAttributeInteger(int dirFd, std::string_view name);

/// Reads an open attribute from its start (sysfs regenerates the value on each read).
std::optional<long long> readAttributeInteger(int fd);
/// The first line of an open attribute, read from its start, without trailing blanks.
std::optional<std::string> readAttributeText(int fd);

/// Writes "<value>\n" at the start of an open attribute.
bool writeAttributeInteger(int fd, long long value);
