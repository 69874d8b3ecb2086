// The bytes that a helper program answers. They are not trusted.
#pragma once

#include <cstddef>
#include <span>
#include <utility>

#include "TavioIpadSDK/helper/helper_process.h"
#include "TavioIpadSDK/helper/limits.h"

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

// The answer of a program that was asked under these limits. The program is stopped when this object
// ends.
class AnswerStream {
  public:
    AnswerStream(HelperProcess process, const Limits& limits, Deadline deadline)
        : process_(std::move(process)), limits_(limits), deadline_(deadline) {}

    // Both return false if the answer is cut short, too long or too late. Then failure() says why;
    // nothing more can be read.

    // Reads exactly into.size() bytes.
    bool fill(std::span<std::byte> into);

    // True if the answer ends here.
    bool endsHere();

    Failure failure() const { return failure_; }

  private:
    HelperProcess process_;
    Limits limits_;
    Deadline deadline_;
    Failure failure_ = Failure::kFailed;
};

}  // namespace tavio::helper
