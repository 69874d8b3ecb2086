#include "tools/tavio/console.h"

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "tools/common/printable.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

const std::string kWipe = "\r\x1B[K";

}  // namespace

Console::Console(Writer write, std::optional<Display> display)
    : write_(std::move(write)),
      display_(std::move(display)),
      stagesDue_(Clock::now() + (display_ ? display_->delay : std::chrono::milliseconds{0})) {
    if (!display_) return;
    try {
        drawing_ = std::thread([this] { drawInTime(); });
    } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch)
        // The work matters more than its display.
    }
}

Console::~Console() {
    {
        std::lock_guard lock(stateMutex_);
        ending_ = true;
    }
    stateChanged_.notify_all();
    if (drawing_.joinable()) drawing_.join();
    std::lock_guard lock(outputMutex_);
    wipe();
}

void Console::drawInTime() {
    std::unique_lock lock(stateMutex_);
    while (!ending_) {
        auto due = nextDrawing(Clock::now());
        auto isWanted = [this] { return ending_ || redrawNow_; };
        if (due) stateChanged_.wait_until(lock, *due, isWanted);
        if (!due) stateChanged_.wait(lock, isWanted);
        redrawNow_ = false;
        lock.unlock();
        redraw();
        lock.lock();
    }
}

// The time of the next drawing, unless a stage begins earlier; none for never.
std::optional<Console::Clock::time_point> Console::nextDrawing(Clock::time_point now) {
    if (progress_) return std::max(progressDue_, now + display_->redraw);
    if (now < stagesDue_) return stagesDue_;
    return std::nullopt;
}

void Console::stage(std::string_view name) {
    {
        std::lock_guard lock(stateMutex_);
        progress_.reset();
        stage_ = name;
        redrawNow_ = true;
    }
    stateChanged_.notify_all();
}

void Console::beginSending(ProgressLine::Unit unit) {
    if (!display_) return;
    {
        std::lock_guard lock(stateMutex_);
        const auto now = Clock::now();
        progress_.emplace(now, unit);
        progressDue_ = now + display_->progressDelay;
        stage_.clear();
        redrawNow_ = true;
    }
    stateChanged_.notify_all();
}

void Console::progress(std::uint64_t done, std::uint64_t total) {
    std::lock_guard lock(stateMutex_);
    if (progress_) progress_->update(Clock::now(), done, total);
}

void Console::clear() {
    stage("");
    std::lock_guard lock(outputMutex_);
    wipe();
}

void Console::line(std::string_view opening, std::string_view text) {
    std::lock_guard lock(outputMutex_);
    wipe();
    write_(std::string(opening) + command_line::printable(text) + "\n");
    show();
}

// The present text for the terminal's last line.
std::string Console::wanted() {
    std::lock_guard lock(stateMutex_);
    if (!display_ || ending_) return {};
    const auto now = Clock::now();
    if (progress_) {
        return now < progressDue_ ? std::string() : progress_->text(now, display_->columns());
    }
    return now < stagesDue_ || stage_.empty() ? std::string() : stage_ + " ...";
}

void Console::redraw() {
    std::lock_guard lock(outputMutex_);
    if (wanted() == shown_) return;
    wipe();
    show();
}

void Console::wipe() {
    if (!shown_.empty()) write_(kWipe);
    shown_.clear();
}

void Console::show() {
    shown_ = wanted();
    if (!shown_.empty()) write_(shown_);
}

namespace {

bool readerOfStandardOutputIsGone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

std::size_t columnsOfStandardError() {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsual;
    return size.ws_col;
}

}  // namespace

std::optional<Display> terminalDisplay() {
    if (::isatty(STDERR_FILENO) != 1) return std::nullopt;
    Display display;
    display.columns = columnsOfStandardError;
    return display;
}
bool standardOutputIsTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

void writeToStandardError(std::string_view text) {
    while (!text.empty()) {
        ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void flushStandardOutput() {
    if (std::cout.flush() || readerOfStandardOutputIsGone()) return;
    throw Failure("standard output cannot be written");
}

}  // namespace tavio::tool
