#pragma once

#include <chrono>
#include <optional>

/// Lets a command through at most once per `gap`: the first one at once, then none
/// until `gap` has passed since the last one let through.
class CommandThrottle {
public:
    using Clock = std::chrono::steady_clock;

    explicit CommandThrottle(std::chrono::milliseconds gap) : gap(gap) {}

    /// Whether a command may go out at `now`; if so, `now` is remembered as its time.
    bool allow(Clock::time_point now);
    /// Forgets the last command, so the next one goes out at once.
    void reset() { last.reset(); }

private:
    std::chrono::milliseconds gap;
    std::optional<Clock::time_point> last;
};
