#include "tools/tavio-printer/web/http_connection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace tavio::virtual_printer {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The subset of `events` that the connection is ready for; 0 after the time limit.
short waitFor(int socket, short events, milliseconds limit) {
    const auto until = Clock::now() + limit;
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
        pollfd polled{socket, events, 0};
        const int wait = static_cast<int>(std::max<milliseconds::rep>(left.count(), 0));
        if (::poll(&polled, 1, wait) >= 0) return polled.revents;
        if (errno != EINTR) return POLLERR;
    }
}

}  // namespace

bool HttpConnection::isConnected() const {
    return (waitFor(socket_.get(), POLLRDHUP, milliseconds(0)) &
            (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL)) == 0;
}

std::size_t HttpConnection::read(std::span<char> into) {
    const std::size_t count = head_.copy(into.data(), into.size(), taken_);
    taken_ += count;
    return count;
}

bool HttpConnection::write(std::string_view bytes) {
    const auto until = Clock::now() + kMaxWrite;
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::send(socket_.get(), bytes.data() + written, bytes.size() - written,
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
            continue;
        }
        if (errno == EINTR) continue;
        if (errno != EAGAIN || Clock::now() >= until) return false;
        if (waitFor(socket_.get(), POLLOUT, kMaxStall) != POLLOUT) return false;
    }
    return true;
}

void HttpConnection::finish() {
    constexpr milliseconds kMaxLinger{500};
    ::shutdown(socket_.get(), SHUT_WR);
    const auto until = Clock::now() + kMaxLinger;
    std::array<char, 4096> ignored{};
    while (Clock::now() < until) {
        const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
        if (waitFor(socket_.get(), POLLIN, left) == 0) return;
        const ssize_t count = ::recv(socket_.get(), ignored.data(), ignored.size(), MSG_DONTWAIT);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) return;
    }
}

}  // namespace tavio::virtual_printer
