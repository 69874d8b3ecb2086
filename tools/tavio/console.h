// What the tool says on standard error: messages, the stage of work that takes long, and how far the
// sending has come.
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

// How stages and progress are shown on the last line of a terminal.
struct Display {
    // How long work may take before its stage is shown, and a job before its progress is.
    std::chrono::milliseconds patience{1'000};
    std::chrono::milliseconds progressPatience{500};

    // The progress is drawn this often at most.
    std::chrono::milliseconds redraw{100};

    std::function<std::size_t()> columns = [] { return std::size_t{80}; };  // of the terminal
};

// Owns the error output: the stage line is wiped before a message and does not run into one.
// Messages may come from any thread. Stages and progress are drawn on a thread of their own, so that
// a stopped terminal stops no job; only messages and clear() wait for the terminal.
//
//   Console console(writeToStandardError, terminalDisplay());
//   console.stage("drawing the page");   // shown when a second has passed since the console began
//   console.warn("the picture is larger than the ticket");
class Console {
  public:
    using Writer = std::function<void(std::string_view)>;

    // write: called under a lock with pieces of output. display: none where there is no terminal;
    // then no stages and no progress are shown.
    Console(Writer write, std::optional<Display> display);
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    // Names what is being done from now on, e.g. "reading".
    void stage(std::string_view name);

    // From now on a job is being sent; ended by the next stage.
    void beginSending();

    // So many bytes of so many have been sent.
    void progress(std::uint64_t done, std::uint64_t total);

    // Ends the display of stages and progress: the last line of the terminal is free now.
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

    // Guards the output, and what stands on the terminal's last line. Taken before stateMutex_.
    std::mutex outputMutex_;
    std::string shown_;

    // Guards what is to be shown; never held while something is written.
    std::mutex stateMutex_;
    std::condition_variable stateChanged_;
    std::string stage_;
    std::optional<ProgressLine> progress_;  // none while nothing is being sent
    Clock::time_point progressDue_;
    bool redrawNow_ = false;  // another stage than the last drawing knew
    bool ending_ = false;

    std::thread drawing_;  // not running where nothing is shown
};

// What to show on standard error: none where it is no terminal.
std::optional<Display> terminalDisplay();
bool standardOutputIsTerminal();
void writeToStandardError(std::string_view text);

// Sends off what was written to std::cout. Throws Failure where it cannot arrive; a reader that has
// gone away has seen enough, and is no failure.
void flushStandardOutput();

}  // namespace tavio::tool
