#include "ResidentHelper.h"

#include "HelperLocation.h"

namespace {

constexpr std::chrono::milliseconds lingerLimit{200};

} // namespace

ResidentHelper::ResidentHelper(std::string program) : program_(std::move(program)) {}

ResidentHelper::~ResidentHelper() {
    if (!child_)
        return;
    child_->inputWriter().reset();
    if (!child_->waitForExit(lingerLimit))
        child_->kill();
}

ResidentHelper::Reply ResidentHelper::request(std::chrono::milliseconds limit) {
    bool startedNow = false;
    const std::string stamp = fileIdentity(program_);
    if (child_ && stamp != startedStamp_)
        drop();
    for (;;) {
        if (!child_) {
            startedStamp_ = stamp;
            child_ = ChildProcess::start(
                program_, {"--serve"},
                {ChildStream::pipe, ChildStream::pipe, ChildStream::nullDevice});
            if (!child_)
                return {Outcome::unavailable, {}};
            startedNow = true;
        }
        if (ChildProcess::writeAll(child_->inputWriter().get(), "read\n"))
            return readAnswer(limit);
        // It died since the last tick; one new start per request.
        drop();
        if (startedNow)
            return {Outcome::failed, {}};
    }
}

ResidentHelper::Reply ResidentHelper::readAnswer(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::string answer;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            break;
        const PipeChunk chunk = ChildProcess::readChunk(child_->outputReader().get(), left);
        if (chunk.kind != PipeChunk::Kind::data)
            break;
        answer += chunk.bytes;
        const std::size_t end = answer.find('\n');
        // Anything after the line would belong to no request: the stream is out of step.
        if (end == answer.size() - 1 && answer.size() <= maxAnswerBytes)
            return {Outcome::answered, std::move(answer)};
        if (end != std::string::npos || answer.size() > maxAnswerBytes)
            break;
    }
    drop(); // hung, dead, or out of step: a fresh one next tick
    return {Outcome::failed, {}};
}

void ResidentHelper::drop() {
    if (child_)
        child_->kill();
    child_.reset();
}
