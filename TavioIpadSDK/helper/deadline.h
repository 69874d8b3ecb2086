// Waiting until a moment.
#pragma once

#include <chrono>

namespace tavio::helper {

using Deadline = std::chrono::steady_clock::time_point;

// True if data or the end of the stream can be read before the deadline.
bool readableBefore(int descriptor, Deadline deadline);

}  // namespace tavio::helper
