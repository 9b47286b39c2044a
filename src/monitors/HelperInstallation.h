#pragma once

#include <string>
#include <vector>

/// What copies the helper with administrator rights: coreutils' install, by its fixed
/// path, so nothing a user can write is ever run as root and no shell reads a path.
inline constexpr const char* installProgram = "/usr/bin/install";
/// What removes it again, by its fixed path.
inline constexpr const char* removeProgram = "/usr/bin/rm";

/// The elevation program's arguments: install, its options, and the two paths as
/// separate arguments after "--", whatever characters they hold. The copy is set-user-ID
/// root and runnable only by root and the group `groupId` (the installing user's own
/// group), so other local users cannot start the fan daemon.
std::vector<std::string> installArguments(const std::string& helperPath,
                                          const std::string& installedPath, unsigned groupId);
