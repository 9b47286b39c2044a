#pragma once

#include <string>
#include <string_view>

/// Where installHelper writes the script it runs with administrator rights.
inline constexpr const char* installScriptPath = "/tmp/vorlune_install.sh";

/// The shell script that copies `helperPath` to `installedPath` and makes the copy
/// root-owned with the set-user-ID bit. Both paths are inserted as they are.
std::string installScriptText(std::string_view helperPath, std::string_view installedPath);
