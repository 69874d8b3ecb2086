// The bytes that a helper program answers. They are not trusted.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <utility>

#include "TavioIpadSDK/helper/limits.h"
#include "TavioIpadSDK/helper/running.h"

namespace tavio::helper {

// Why there is no answer, or no whole one.
enum class Failure {
    kUnreadable,   // the input is not open
    kMissing,      // the program cannot be started
    kFailed,       // the program died, or its answer is malformed
    kCpuLimit,     // stopped: used more processor time than allowed
    kWallLimit,    // stopped: took longer than allowed
    kMemoryLimit,  // no memory for the input
};

// Why a process that ended like this did not answer.
Failure failureOf(const Ending& ending, const Limits& limits);

// The answer of a process that was asked under these limits. The process is stopped when this object
// ends.
class AnswerStream {
  public:
    // Asks once more; none if that is not possible.
    using Again = std::function<std::optional<Running>()>;

    // again: called if the process is lost together with its keeper, and nothing of its answer was read.
    AnswerStream(Running process, const Limits& limits, Deadline deadline, Again again = nullptr)
        : process_(std::move(process)),
          limits_(limits),
          deadline_(deadline),
          again_(std::move(again)) {}

    // Both return false if the answer is cut short, too long or too late. Then failure() says why;
    // nothing more can be read.

    // Reads exactly into.size() bytes.
    bool fill(std::span<std::byte> into);

    // True if the answer ends here.
    bool endsHere();

    Failure failure() const { return failure_; }

  private:
    enum class Read {
        kFull,  // `into` is filled
        kEnd,   // the answer ended before `into` was full
        kLate,  // the deadline came before `into` was full
    };

    Read read(std::span<std::byte> into);
    bool askAgain();

    Running process_;
    Limits limits_;
    Deadline deadline_;
    Again again_;  // none after the first byte
    Failure failure_ = Failure::kFailed;
};

}  // namespace tavio::helper
