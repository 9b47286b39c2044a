#include "HelperOutput.h"

#include <cerrno>
#include <string>
#include <unistd.h>

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void reportError(std::string_view message) {
    std::string line = "smc_helper: ";
    line.append(message);
    line += '\n';
    writeAll(STDERR_FILENO, line);
}
