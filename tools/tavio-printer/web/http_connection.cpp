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

bool HttpConnection::is_writable() const {
    return (waitFor(socket_.get(), POLLRDHUP, milliseconds(0)) &
            (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL)) == 0;
}

ssize_t HttpConnection::read(char* to, std::size_t size) {
    const std::size_t count = head_.copy(to, size, taken_);
    taken_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t HttpConnection::write(const char* bytes, std::size_t size) {
    const auto until = Clock::now() + kMaxWrite;
    std::size_t written = 0;
    while (written < size) {
        const ssize_t count =
            ::send(socket_.get(), bytes + written, size - written, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
            continue;
        }
        if (errno == EINTR) continue;
        if (errno != EAGAIN || Clock::now() >= until) return -1;
        if (waitFor(socket_.get(), POLLOUT, kMaxStall) != POLLOUT) return -1;
    }
    return static_cast<ssize_t>(size);
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

// The library passes these to handlers, which do not use them here.
void HttpConnection::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}
void HttpConnection::get_local_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}

}  // namespace tavio::virtual_printer
