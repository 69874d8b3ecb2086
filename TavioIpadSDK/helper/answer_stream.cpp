#include "TavioIpadSDK/helper/answer_stream.h"

#include <csignal>
#include <optional>

namespace tavio::helper {

namespace {

constexpr int kLibrariesMissing = 127;  // how the dynamic loader ends a program it cannot load

// The reason why the answer is not whole.
Failure failureOf(const Ending& ending, const Limits& limits) {
    if (ending.exitStatus == kLibrariesMissing) return Failure::kMissing;
    const bool overTime = ending.processorTime >= limits.cpu;
    if (ending.signal == SIGXCPU || (ending.signal == SIGKILL && overTime)) {
        return Failure::kCpuLimit;
    }
    return Failure::kFailed;
}

}  // namespace

bool AnswerStream::fill(std::span<std::byte> into) {
    const HelperProcess::Read read = process_.read(into, deadline_);
    if (read == HelperProcess::Read::kFull) return true;
    failure_ = Failure::kWallLimit;
    if (read == HelperProcess::Read::kLate) return false;
    const std::optional<Ending> ending = process_.waitForEnd(deadline_);
    if (ending) failure_ = failureOf(*ending, limits_);
    return false;
}

bool AnswerStream::endsHere() {
    std::byte next{};
    const HelperProcess::Read read = process_.read(std::span(&next, 1), deadline_);
    failure_ = read == HelperProcess::Read::kLate ? Failure::kWallLimit : Failure::kFailed;
    return read == HelperProcess::Read::kEnd;
}

}  // namespace tavio::helper
