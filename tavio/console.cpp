#include "tavio/console.h"

#include <cerrno>
#include <iostream>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include "tavio/failure.h"

namespace tavio::tool {

Console::Console(Writer write, bool showStages, std::chrono::milliseconds patience)
    : write_(std::move(write)), due_(std::chrono::steady_clock::now() + patience) {
    if (showStages) clock_ = std::thread([this] { showWhenPatienceEnds(); });
}

Console::~Console() {
    {
        std::lock_guard lock(mutex_);
        ending_ = true;
        wipe();
    }
    wakeUp_.notify_all();
    if (clock_.joinable()) clock_.join();
}

void Console::showWhenPatienceEnds() {
    std::unique_lock lock(mutex_);
    wakeUp_.wait_until(lock, due_, [this] { return ending_; });
    if (ending_) return;
    impatient_ = true;
    show();
}

void Console::stage(std::string_view name) {
    std::lock_guard lock(mutex_);
    wipe();
    stage_ = name;
    show();
}

void Console::line(std::string_view opening, std::string_view text) {
    std::lock_guard lock(mutex_);
    wipe();
    write_(std::string(opening) + printable(text) + "\n");
    show();
}

void Console::wipe() {
    if (shown_) write_("\r\x1B[K");
    shown_ = false;
}

void Console::show() {
    if (!impatient_ || stage_.empty()) return;
    write_(stage_ + " ...");
    shown_ = true;
}

namespace {

unsigned char codeAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : '\0';
}

// The number of bytes of the control character at the index; 0 where there is none. In UTF-8 those
// of U+0080 to U+009F, which also steer terminals, have two bytes.
std::size_t controlSize(std::string_view text, std::size_t index) {
    const unsigned char code = codeAt(text, index);
    if (code < 0x20 || code == 0x7F) return 1;
    const unsigned char second = codeAt(text, index + 1);
    return code == 0xC2 && second >= 0x80 && second <= 0x9F ? 2 : 0;
}

bool readerOfStandardOutputIsGone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace

std::string printable(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string result;
    std::size_t toShow = 0;  // bytes of a control character that are not shown yet
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (toShow == 0) toShow = controlSize(text, index);
        if (toShow == 0) {
            result += text[index];
            continue;
        }
        const unsigned char code = codeAt(text, index);
        result += {'\\', 'x', kDigits[code >> 4], kDigits[code & 15]};
        --toShow;
    }
    return result;
}

bool standardErrorIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
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
