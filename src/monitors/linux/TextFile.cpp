#include "TextFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

bool readTextFile(const std::string& path, std::string& buffer) {
    buffer.clear();
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    // /proc files report size 0, so read in chunks until end of file.
    constexpr std::size_t chunk = 4096;
    bool ok = true;
    for (;;) {
        const std::size_t used = buffer.size();
        buffer.resize(used + chunk);
        const ssize_t got = ::read(fd, buffer.data() + used, chunk);
        if (got < 0 && errno == EINTR) {
            buffer.resize(used);
            continue;
        }
        if (got <= 0) {
            buffer.resize(used);
            ok = got == 0;
            break;
        }
        buffer.resize(used + static_cast<std::size_t>(got));
    }
    ::close(fd);
    if (!ok)
        buffer.clear();
    return ok;
}

std::string pathUnderRoot(const std::string& root, const std::string& absolutePath) {
    std::string base = root;
    while (!base.empty() && base.back() == '/')
        base.pop_back();
    return base + absolutePath;
}
