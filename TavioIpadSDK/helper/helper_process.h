// A program that reads one file and answers on a pipe, and that can be stopped.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

using machine::Descriptor;
using Deadline = std::chrono::steady_clock::time_point;

// How a program ended.
struct Ending {
    std::optional<int> exitStatus;  // it ended by itself
    std::optional<int> signal;      // a signal ended it; neither: the application reaped it
    std::chrono::microseconds processorTime{0};
};

// One running program. The destructor ends its process and all processes in its process group.
class HelperProcess {
  public:
    // Starts `program`, a path, with `input` as its standard input. This object reads its standard
    // output; standard error goes to /dev/null. The program gets no other file descriptor, no
    // blocked or ignored signal, and of the environment only what it needs to find fonts and
    // libraries. `arguments` come after the program's name. Returns none if it cannot be started.
    static std::optional<HelperProcess> start(const std::string& program,
                                              const std::vector<std::string>& arguments,
                                              const Descriptor& input);

    HelperProcess(HelperProcess&& other) noexcept;
    HelperProcess& operator=(HelperProcess&&) = delete;
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;
    ~HelperProcess();

    enum class Read {
        kFull,  // `into` is filled
        kEnd,   // the answer ended before `into` was full
        kLate,  // the deadline came before `into` was full
    };

    // Reads exactly into.size() bytes of the answer and waits for them until the deadline.
    Read read(std::span<std::byte> into, Deadline deadline);

    // Waits until the process has ended; none if the deadline comes first. Nothing can be read
    // afterwards.
    std::optional<Ending> waitForEnd(Deadline deadline);

  private:
    HelperProcess(pid_t process, Descriptor answer)
        : process_(process), answer_(std::move(answer)) {}

    bool endedBefore(Deadline deadline) const;
    Ending stopAndReap();

    pid_t process_;      // 0 after it was reaped
    Descriptor answer_;  // the pipe's reading end
};

}  // namespace tavio::helper
