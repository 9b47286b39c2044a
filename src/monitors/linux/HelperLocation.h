#pragma once

#include <optional>
#include <string>

/// Whether `path` names a regular file (after symlinks) that this process may execute.
bool isExecutableFile(const std::string& path);

/// Whether `path` itself (a symlink is not followed) is owned by root and has the
/// set-user-ID bit.
bool isRootOwnedSetuid(const std::string& path);

/// Whether `path` itself is a regular file owned by root or by this user that nobody
/// else can write: the only kind of helper that may be copied set-user-ID root.
bool isTrustedHelperSource(const std::string& path);

/// What changes when the file at `path` is replaced or written: its device, inode, size
/// and change time. Empty when it cannot be looked at.
std::string fileIdentity(const std::string& path);

/// The directory that holds the running executable, from /proc/self/exe.
std::optional<std::string> executableDirectory();

/// The one-shot helper, first hit wins: <executableDirectory>/../libexec/vorlune/smc_helper
/// (installed), <executableDirectory>/../SMCHelper/smc_helper (build tree), then
/// `buildHelperPath`. Each must be an executable file that isTrustedHelperSource accepts.
/// An empty directory or build path skips those places.
std::optional<std::string> locateHelperFrom(const std::string& executableDirectory,
                                            const std::string& buildHelperPath);
