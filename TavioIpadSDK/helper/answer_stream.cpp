#include "TavioIpadSDK/helper/answer_stream.h"

#include <cerrno>
#include <csignal>
#include <unistd.h>

#include "TavioIpadSDK/helper/keeper_protocol.h"

namespace tavio::helper {

namespace {

constexpr int kLibrariesMissing = 127;  // how the dynamic loader ends a program it cannot load

}  // namespace

Failure failureOf(const Ending& ending, const Limits& limits) {
    if (ending.exitStatus == kLibrariesMissing) return Failure::kMissing;
    if (ending.exitStatus == kOutOfMemoryStatus) return Failure::kMemoryLimit;
    const bool overTime = ending.processorTime >= limits.cpu;
    if (ending.signal == SIGXCPU || (ending.signal == SIGKILL && overTime)) {
        return Failure::kCpuLimit;
    }
    return Failure::kFailed;
}

AnswerStream::Read AnswerStream::read(std::span<std::byte> into) {
    while (!into.empty()) {
        if (!readableBefore(process_.answer.get(), deadline_)) return Read::kLate;
        const ssize_t count = ::read(process_.answer.get(), into.data(), into.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return Read::kEnd;
        again_ = nullptr;
        into = into.subspan(static_cast<std::size_t>(count));
    }
    return Read::kFull;
}

bool AnswerStream::askAgain() {
    if (!again_) return false;
    std::optional<Running> process = std::exchange(again_, nullptr)();
    if (!process) return false;
    process_ = *std::move(process);
    return true;
}

bool AnswerStream::fill(std::span<std::byte> into) {
    const Read done = read(into);
    if (done == Read::kFull) return true;
    failure_ = Failure::kWallLimit;
    if (done == Read::kLate) return false;
    process_.answer.reset();
    const std::optional<Ending> ending = process_.leash->waitForEnd(deadline_);
    if (!ending) return false;
    const bool isLost = !ending->exitStatus && !ending->signal;
    if (isLost && askAgain()) return fill(into);
    failure_ = failureOf(*ending, limits_);
    return false;
}

bool AnswerStream::endsHere() {
    std::byte next{};
    const Read done = read(std::span(&next, 1));
    failure_ = done == Read::kLate ? Failure::kWallLimit : Failure::kFailed;
    return done == Read::kEnd;
}

}  // namespace tavio::helper
