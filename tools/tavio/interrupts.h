// SIGINT (Ctrl-C) and SIGTERM.
#pragma once

#include <array>
#include <csignal>
#include <memory>
#include <string>

#include "tavio/links/link.h"

namespace tavio::tool {

// While an object exists, the first SIGINT or SIGTERM cancels the link, so that the outcome of the
// job can still be printed; a second one ends the program at once. An ignored signal stays ignored.
// Only one object may exist at a time.
class CancelOnSignal {
  public:
    explicit CancelOnSignal(std::shared_ptr<links::Link> link);
    CancelOnSignal(const CancelOnSignal&) = delete;
    CancelOnSignal& operator=(const CancelOnSignal&) = delete;
    ~CancelOnSignal();

    // The number of the signal that came, 0 if none has.
    static int caught() noexcept;

  private:
    std::shared_ptr<links::Link> link_;
};

// The signals, in the order of LastWords::out.
inline constexpr std::array<int, 2> kInterrupts{SIGINT, SIGTERM};

// What is written when a signal ends the program.
struct LastWords {
    std::string err;                                  // on standard error
    std::array<std::string, kInterrupts.size()> out;  // on standard output, for each signal
};

// While an object exists, SIGINT or SIGTERM writes the last words and ends the program with the status
// of that signal: nothing has been sent that could be cancelled. An ignored signal stays ignored. Only
// one object may exist at a time, and none beside a CancelOnSignal.
class ExitOnSignal {
  public:
    explicit ExitOnSignal(LastWords words);
    ExitOnSignal(const ExitOnSignal&) = delete;
    ExitOnSignal& operator=(const ExitOnSignal&) = delete;
    ~ExitOnSignal();

  private:
    LastWords words_;
};

}  // namespace tavio::tool
