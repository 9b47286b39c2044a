#pragma once

#include <string>

/// Reads a whole (usually /proc or /sys) file into `buffer`, reusing its storage.
/// Returns false, with `buffer` empty, when the file cannot be opened or read.
bool readTextFile(const std::string& path, std::string& buffer);

/// `absolutePath` (starting with '/') inside the tree at `root`; "/" is the real system.
std::string pathUnderRoot(const std::string& root, const std::string& absolutePath);
