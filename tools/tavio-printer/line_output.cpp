#include "tools/tavio-printer/line_output.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

#include "tools/common/printable.h"

namespace tavio::virtual_printer {
namespace {

// A writable pipe takes a line of our length as a whole; a file and a terminal wait.
bool isWritable(int descriptor, std::chrono::milliseconds timeout) {
    pollfd polled{descriptor, POLLOUT, 0};
    return ::poll(&polled, 1, static_cast<int>(timeout.count())) == 1;
}

}  // namespace

void LineOutput::write(std::string_view line) {
    std::string text = command_line::printable(line);
    if (text.size() > kMaxBytes) text.replace(kMaxBytes - 3, std::string::npos, "...");
    text += '\n';

    const std::lock_guard lock(mutex_);
    stuck_ = !isWritable(descriptor_, stuck_ ? std::chrono::milliseconds(0) : kTimeout);
    if (stuck_) return;
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t count = ::write(descriptor_, rest.data(), rest.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;  // the reader is gone
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace tavio::virtual_printer
