#include "StdinLines.h"

#include <unistd.h>

#include <cerrno>

StdinLines::StdinLines(QObject* parent)
    : QObject(parent), notifier(STDIN_FILENO, QSocketNotifier::Read) {
    connect(&notifier, &QSocketNotifier::activated, this, &StdinLines::readAvailable);
}

void StdinLines::readAvailable() {
    char buffer[4096];
    ssize_t n;
    do {
        n = ::read(STDIN_FILENO, buffer, sizeof buffer);
    } while (n < 0 && errno == EINTR);
    if (n <= 0) {
        notifier.setEnabled(false);
        emit closed();
        return;
    }
    pending.append(buffer, static_cast<size_t>(n));
    for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
        const std::string line = pending.substr(0, end);
        pending.erase(0, end + 1);
        emit lineReceived(line);
    }
}
