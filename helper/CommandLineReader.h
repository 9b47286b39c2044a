#pragma once

#include "CommandParser.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

/// Cuts the daemon's input into lines. A line that grows past the limit is handed on
/// once, cut just past the limit (so the parser refuses it), and the rest of it, up to
/// its line feed, is dropped: a long line can never grow memory or split into commands.
class CommandLineReader {
public:
    void append(std::string_view bytes);
    std::optional<std::string> nextLine();

private:
    std::string pending_;
    bool discarding_ = false;
    std::deque<std::string> lines_;
};
