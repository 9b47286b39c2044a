#pragma once

#include "UniqueFd.h"

#include <string>

/// Reads a whole (usually /proc or /sys) file into `buffer`, reusing its storage.
/// Returns false, with `buffer` empty, when the file cannot be opened or read.
bool readTextFile(const std::string& path, std::string& buffer);

/// `absolutePath` (starting with '/') inside the tree at `root`; "/" is the real system.
std::string pathUnderRoot(const std::string& root, const std::string& absolutePath);

/// A file read whole on every call, for the /proc files sampled each tick: it stays open
/// and is read with pread from offset 0, so a read costs no open or close and, once the
/// buffer has grown to the file's size, no allocation. A file that cannot be opened, or
/// whose read fails, is opened again at the next read.
class OpenTextFile {
public:
    explicit OpenTextFile(std::string path);

    /// The file's current content into `buffer`; false, with `buffer` empty, when it
    /// cannot be read.
    bool read(std::string& buffer);
    const std::string& path() const { return path_; }

private:
    std::string path_;
    UniqueFd fd;
};
