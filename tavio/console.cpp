#include "tavio/console.h"

#include <cerrno>
#include <unistd.h>
#include <utility>

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

std::string printable(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string result;
    for (char character : text) {
        auto code = static_cast<unsigned char>(character);
        if (code >= 0x20 && code != 0x7F) {
            result += character;
        } else {
            result += {'\\', 'x', kDigits[code >> 4], kDigits[code & 15]};
        }
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

}  // namespace tavio::tool
