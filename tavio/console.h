// What the tool says on standard error: messages, and the stage of work that takes long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace tavio::tool {

// Owns the error output: the stage line is wiped before a message and does not run into one.
// Messages may come from any thread.
//
//   Console console(writeToStandardError, standardErrorIsTerminal());
//   console.stage("drawing the page");   // shown when a second has passed since the console began
//   console.warn("the picture is larger than the ticket");
class Console {
  public:
    using Writer = std::function<void(std::string_view)>;

    // write: called under a lock with pieces of output. showStages: whether stages are shown.
    // patience: how long work may take before its stage is shown.
    Console(Writer write, bool showStages, std::chrono::milliseconds patience = kPatience);
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    // Names what is being done from now on, e.g. "reading"; "" ends the display.
    void stage(std::string_view name);

    void fail(std::string_view sentence) { line("tavio: ", sentence); }
    void warn(std::string_view sentence) { line("tavio: warning: ", sentence); }
    void trace(std::string_view text) { line("tavio: trace: ", text); }

    static constexpr std::chrono::milliseconds kPatience{1000};

  private:
    void line(std::string_view opening, std::string_view text);
    void showWhenPatienceEnds();
    void wipe();
    void show();

    const Writer write_;
    const std::chrono::steady_clock::time_point due_;

    std::mutex mutex_;  // guards what follows
    std::condition_variable wakeUp_;
    std::string stage_;
    bool impatient_ = false;  // the work takes long: stages are shown
    bool shown_ = false;      // a stage stands on the terminal's last line
    bool ending_ = false;

    std::thread clock_;  // not running where stages are not shown
};

// The text with control characters, those of U+0080 to U+009F included, made visible ("\x1B",
// "\xC2\x9B"), so that a file name or a document's text cannot steer the terminal that it is shown
// on.
std::string printable(std::string_view text);

bool standardErrorIsTerminal();
bool standardOutputIsTerminal();
void writeToStandardError(std::string_view text);

// Sends off what was written to std::cout. Throws Failure where it cannot arrive; a reader that has
// gone away has seen enough, and is no failure.
void flushStandardOutput();

}  // namespace tavio::tool
