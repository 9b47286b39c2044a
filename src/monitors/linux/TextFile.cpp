#include "TextFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

// /proc files report size 0, so read until end of file, growing the buffer as needed;
// its size is used as room, so a buffer that has held the file once never grows again.
bool readFromStart(int fd, std::string& buffer) {
    constexpr std::size_t chunk = 4096;
    buffer.resize(std::max(buffer.capacity(), chunk));
    std::size_t used = 0;
    for (;;) {
        if (used == buffer.size())
            buffer.resize(2 * buffer.size());
        const ssize_t got =
            ::pread(fd, buffer.data() + used, buffer.size() - used, static_cast<off_t>(used));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            buffer.resize(got == 0 ? used : 0);
            return got == 0;
        }
        used += static_cast<std::size_t>(got);
    }
}

} // namespace

bool readTextFile(const std::string& path, std::string& buffer) {
    const UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd) {
        buffer.clear();
        return false;
    }
    return readFromStart(fd.get(), buffer);
}

std::string pathUnderRoot(const std::string& root, const std::string& absolutePath) {
    std::string base = root;
    while (!base.empty() && base.back() == '/')
        base.pop_back();
    return base + absolutePath;
}

OpenTextFile::OpenTextFile(std::string path) : path_(std::move(path)) {}

bool OpenTextFile::read(std::string& buffer) {
    if (!fd)
        fd.reset(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd) {
        buffer.clear();
        return false;
    }
    if (readFromStart(fd.get(), buffer))
        return true;
    fd.reset();
    return false;
}
