#include "tools/tavio-printer/doors/server_bench.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tavio::virtual_printer::testing {
namespace {

constexpr std::chrono::seconds kTimeout{60};

}  // namespace

bool eventually(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kTimeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

PrintServerSettings onAnyPort(const DeviceSettings& device) {
    PrintServerSettings settings;
    settings.device = device;
    settings.listen = ListenAddress{"127.0.0.1", 0};
    return settings;
}

ServerBench::ServerBench(const PrintServerSettings& settings)
    : server(settings, [this](DeviceTicket ticket) {
          const std::lock_guard lock(mutex_);
          tickets_.push_back(std::move(ticket));
          more_.notify_all();
      }) {}

std::vector<DeviceTicket> ServerBench::tickets(std::size_t count) {
    std::unique_lock lock(mutex_);
    EXPECT_TRUE(more_.wait_for(lock, kTimeout, [&] { return tickets_.size() >= count; }))
        << tickets_.size() << " tickets instead of " << count;
    return tickets_;
}

std::vector<std::string> ServerBench::streams(std::size_t count) {
    std::vector<std::string> all;
    for (const DeviceTicket& ticket : tickets(count)) all.push_back(textOf(ticket.bytes));
    return all;
}

std::size_t ServerBench::ticketCount() {
    const std::lock_guard lock(mutex_);
    return tickets_.size();
}

std::uint16_t ServerBench::port() const {
    const std::string address = server.printAddress();
    return static_cast<std::uint16_t>(std::stoi(address.substr(address.rfind(':') + 1)));
}

bool ServerBench::hasReceived(std::uint64_t bytes) {
    return eventually([&] { return server.state().received >= bytes; });
}

bool ServerBench::isConnected() {
    return eventually([this] { return server.state().connected; });
}

TcpClient::TcpClient(std::uint16_t port, const char* host) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host, std::to_string(port).c_str(), &hints, &found) != 0) return;
    socket_.reset(::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::connect(socket_.get(), found->ai_addr, found->ai_addrlen) != 0) {
        error = errno;
        socket_.reset();
    }
    ::freeaddrinfo(found);
    const timeval timeout{kTimeout.count(), 0};
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
}

void TcpClient::send(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (count < 0) {
            error = errno;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::size_t TcpClient::sendUntilItBlocks(std::string_view text) {
    std::size_t sent = 0;
    for (;;) {
        const ssize_t count =
            ::send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0) return sent;
        sent += static_cast<std::size_t>(count);
    }
}

void TcpClient::holdLittle() {
    const int little = 4096;
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_SNDBUF, &little, sizeof little);
}

void TcpClient::endSending() {
    ::shutdown(socket_.get(), SHUT_WR);
}

void TcpClient::reset() {
    const linger atOnce{1, 0};
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket_.reset();
}

std::string TcpClient::read(std::size_t count) {
    std::string text;
    std::array<char, 4096> buffer{};
    while (text.size() < count) {
        const std::size_t limit = std::min(buffer.size(), count - text.size());
        const ssize_t got = ::recv(socket_.get(), buffer.data(), limit, 0);
        if (got < 0) error = errno;
        if (got <= 0) break;
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return text;
}

std::string TcpClient::readToEnd() {
    return read(std::string::npos);
}

}  // namespace tavio::virtual_printer::testing
