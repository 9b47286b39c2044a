#pragma once

#include <string>
#include <string_view>

/// Writes `bytes` to a new file beside `path` and renames it over `path`, so readers
/// see the old file or the whole new one. Whatever sits at `path` is replaced, never
/// followed: a symlink there is replaced by the file. False when the file cannot be
/// written or renamed into place (for instance a directory at `path`); nothing is
/// then left behind.
bool writeFileAtomically(const std::string& path, std::string_view bytes);
