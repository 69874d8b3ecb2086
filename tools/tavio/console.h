// The tool's output on standard error: messages, the stage of long work, and the progress of
// sending.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "tools/tavio/progress_line.h"

namespace tavio::tool {

// Settings of the last line of a terminal, which shows stages and progress.
struct Display {
    // The delay before a stage or the progress of a job is shown.
    std::chrono::milliseconds delay{1'000};
    std::chrono::milliseconds progressDelay{500};

    // The minimum interval between two drawings of the progress.
    std::chrono::milliseconds redraw{100};

    std::function<std::size_t()> columns = [] { return std::size_t{80}; };  // of the terminal
};

// Owns the error output: the stage line is cleared before a message. Messages may come from any
// thread. Stages and progress are drawn on a thread of their own, so that a stopped terminal stops
// no job; only messages and clear() wait for the terminal.
//
//   Console console(writeToStandardError, terminalDisplay());
//   console.stage("drawing the page");   // shown a second after the start of the console
//   console.warn("the picture is larger than the ticket");
class Console {
  public:
    using Writer = std::function<void(std::string_view)>;

    // write: called under a lock with pieces of output. display: none without a terminal; then no
    // stages and no progress are shown.
    Console(Writer write, std::optional<Display> display);
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    // Begins a stage of the work, e.g. "reading".
    void stage(std::string_view name);

    // Begins the sending of a job; the next stage ends it.
    void beginSending(ProgressLine::Unit unit = ProgressLine::Unit::kBytes);

    // `done` bytes or tickets of `total` have been sent.
    void progress(std::uint64_t done, std::uint64_t total);

    // Ends the display of stages and progress and clears the last line of the terminal.
    void clear();

    void fail(std::string_view sentence) { line("tavio: ", sentence); }
    void warn(std::string_view sentence) { line("tavio: warning: ", sentence); }
    void trace(std::string_view text) { line("tavio: trace: ", text); }

  private:
    using Clock = std::chrono::steady_clock;

    void line(std::string_view opening, std::string_view text);
    void drawInTime();
    std::optional<Clock::time_point> nextDrawing(Clock::time_point now);
    void redraw();
    void wipe();
    void show();
    std::string wanted();

    const Writer write_;
    const std::optional<Display> display_;
    const Clock::time_point stagesDue_;

    // Guards the output and the text on the terminal's last line. Taken before stateMutex_.
    std::mutex outputMutex_;
    std::string shown_;

    // Guards the state to be shown; never held during a write.
    std::mutex stateMutex_;
    std::condition_variable stateChanged_;
    std::string stage_;
    std::optional<ProgressLine> progress_;  // only while a job is being sent
    Clock::time_point progressDue_;
    bool redrawNow_ = false;  // the stage has changed since the last drawing
    bool ending_ = false;

    std::thread drawing_;  // not running without a display
};

// The display for standard error; none if it is no terminal.
std::optional<Display> terminalDisplay();
bool standardOutputIsTerminal();
void writeToStandardError(std::string_view text);

// Flushes std::cout. Throws Failure if that fails; a closed pipe is no failure.
void flushStandardOutput();

}  // namespace tavio::tool
