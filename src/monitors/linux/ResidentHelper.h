#pragma once

#include "ChildProcess.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

/// smc_helper kept running in its serving mode ("--serve"), asked for one answer per
/// tick over its pipes instead of starting a process each time. A helper that hangs
/// past the limit is killed and started again at the next request; one that has died,
/// or whose file was replaced (an upgrade), is started again, at most once per request.
/// Not thread-safe: one caller at a time.
class ResidentHelper {
public:
    explicit ResidentHelper(std::string program);
    /// Closes the helper's input, which ends it, and kills it if it lingers.
    ~ResidentHelper();
    ResidentHelper(const ResidentHelper&) = delete;
    ResidentHelper& operator=(const ResidentHelper&) = delete;

    enum class Outcome {
        answered,   ///< `answer` holds one line, its line feed included
        failed,     ///< it hung, died, or answered too much: no readings this tick
        unavailable ///< it cannot be started: ask the one-shot helper instead
    };
    struct Reply {
        Outcome outcome = Outcome::failed;
        std::string answer;
    };

    /// Asks for the current readings and waits up to `limit` for the whole answer.
    Reply request(std::chrono::milliseconds limit);

    /// Longer answers are refused, as a one-shot helper's would be: it cannot exit
    /// before the application reads a full pipe.
    static constexpr std::size_t maxAnswerBytes = 65536;

private:
    Reply readAnswer(std::chrono::milliseconds limit);
    void drop();

    std::string program_;
    std::string startedStamp_; // the program file's identity when the child started
    std::unique_ptr<ChildProcess> child_;
};
