#include "CommandLineReader.h"

void CommandLineReader::append(std::string_view bytes) {
    for (const char c : bytes) {
        if (c == '\n') {
            if (!discarding_)
                lines_.push_back(std::move(pending_));
            pending_.clear();
            discarding_ = false;
        } else if (!discarding_) {
            pending_ += c;
            if (pending_.size() > maxCommandLineBytes) {
                lines_.push_back(std::move(pending_));
                pending_.clear();
                discarding_ = true;
            }
        }
    }
}

std::optional<std::string> CommandLineReader::nextLine() {
    if (lines_.empty())
        return std::nullopt;
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}
