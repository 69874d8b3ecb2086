#include "tools/tavio-printer/web/http_listener.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "tools/tavio-printer/doors/listening_socket.h"
#include "tools/tavio-printer/web/http_head.h"

namespace tavio::virtual_printer {
namespace {

constexpr std::string_view kHeadTooLong =
    "HTTP/1.1 431 Request Header Fields Too Large\r\n"
    "Connection: close\r\nContent-Length: 0\r\n\r\n";

// The backlog of connections that wait for accept().
constexpr int kBacklog = 128;

// The pause before the next accept() if the process has no file descriptor left.
constexpr int kRetryMilliseconds = 50;

}  // namespace

HttpListener::HttpListener(const std::string& address, std::uint16_t port)
    : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!wake_.isOpen()) throw std::runtime_error("there are no more descriptors for the web page");
    ListenAddress place{address, port};
    listening_ = listenOn(place, kBacklog);
    port_ = place.port;
}

void HttpListener::run(const OnRequest& onRequest) {
    std::vector<pollfd> polled;
    while (true) {
        const bool pause = std::exchange(outOfDescriptors_, false);
        polled.clear();
        polled.push_back({wake_.get(), POLLIN, 0});
        polled.push_back({pause ? -1 : listening_.get(), POLLIN, 0});
        for (const Waiting& each : waiting_) polled.push_back({each.socket.get(), POLLIN, 0});
        const int wait = pause ? kRetryMilliseconds : millisecondsToNextDeadline();
        if (::poll(polled.data(), polled.size(), wait) < 0 && errno != EINTR) return;
        if (polled[0].revents != 0) return;

        std::size_t index = 2;
        const auto now = Clock::now();
        std::erase_if(waiting_, [&](Waiting& each) {
            const bool readable = polled.at(index++).revents != 0;
            return readable ? !receive(each, onRequest) : each.until <= now;
        });
        if (polled[1].revents != 0) accept();
    }
}

void HttpListener::accept() {
    machine::Descriptor socket(
        ::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket.isOpen()) {
        outOfDescriptors_ = errno == EMFILE || errno == ENFILE || errno == ENOMEM;
        return;
    }
    if (waiting_.size() == kMaxWaiting) waiting_.erase(waiting_.begin());
    waiting_.push_back({std::move(socket), "", Clock::now() + kTimeout});
}

// False if the connection needs no more reading here.
bool HttpListener::receive(Waiting& connection, const OnRequest& onRequest) {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::recv(connection.socket.get(), buffer.data(), buffer.size(), 0);
    if (count < 0) return errno == EAGAIN || errno == EINTR;
    if (count == 0) return false;
    connection.received.append(buffer.data(), static_cast<std::size_t>(count));
    const std::size_t end = headEnd(connection.received);
    if (std::min(end, connection.received.size()) > kMaxHeadBytes) {
        static_cast<void>(::send(connection.socket.get(), kHeadTooLong.data(), kHeadTooLong.size(),
                                 MSG_NOSIGNAL));
        return false;
    }
    if (end == std::string::npos) return true;
    connection.received.resize(end);  // a body may follow, but no request here has one
    onRequest(std::move(connection.socket), std::move(connection.received));
    return false;
}

int HttpListener::millisecondsToNextDeadline() const {
    if (waiting_.empty()) return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(waiting_.front().until - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

void HttpListener::stop() {
    static_cast<void>(::eventfd_write(wake_.get(), 1));
}

}  // namespace tavio::virtual_printer
