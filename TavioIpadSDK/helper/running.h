// A process that answers on a pipe, and that can be stopped.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "TavioIpadSDK/helper/deadline.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

using machine::Descriptor;

// How a process ended. Neither status nor signal: nobody can tell.
struct Ending {
    std::optional<int> exitStatus;  // it ended by itself
    std::optional<int> signal;      // a signal ended it
    std::chrono::microseconds processorTime{0};
};

// Holds one process: the destructor ends it and all processes in its process group.
class Leash {
  public:
    Leash() = default;
    Leash(const Leash&) = delete;
    Leash& operator=(const Leash&) = delete;
    virtual ~Leash() = default;

    // Waits until the process has ended; none if the deadline comes first.
    virtual std::optional<Ending> waitForEnd(Deadline deadline) = 0;
};

struct Running {
    std::unique_ptr<Leash> leash;
    Descriptor answer;  // the pipe's reading end; closed before the process is stopped
};

}  // namespace tavio::helper
