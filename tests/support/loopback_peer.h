// The far end of a real connection on this machine, played by a thread.
#pragma once

#include <array>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::links::test {

using machine::Descriptor;

// A port of this machine. Nobody answers there unless it listens.
class Port {
  public:
    explicit Port(int family = AF_INET)
        : socket_(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)), family_(family) {
        sockaddr_storage address{};
        address.ss_family = static_cast<sa_family_t>(family);
        if (family == AF_INET6) {
            reinterpret_cast<sockaddr_in6&>(address).sin6_addr = in6addr_loopback;
        } else {
            reinterpret_cast<sockaddr_in&>(address).sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        }
        auto* any = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = family == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
        isThere_ =
            ::bind(socket_.get(), any, size) == 0 && ::getsockname(socket_.get(), any, &size) == 0;
        number_ = ntohs(reinterpret_cast<sockaddr_in&>(address).sin_port);
    }

    // False where the machine has no such network.
    bool isThere() const { return isThere_; }

    std::uint16_t number() const { return number_; }
    std::string address() const {
        return std::string(family_ == AF_INET6 ? "[::1]:" : "127.0.0.1:")
            .append(std::to_string(number_));
    }

    // The receive buffer of each connection to it.
    void setReceiveBuffer(int size) {
        EXPECT_EQ(::setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size), 0);
    }
    void listen() { EXPECT_EQ(::listen(socket_.get(), 1), 0); }

    // Readable when a connection has come.
    int descriptor() const { return socket_.get(); }

    // A connection, or -1 if none comes.
    int accept() {
        pollfd watched{socket_.get(), POLLIN, 0};
        if (::poll(&watched, 1, 60'000) != 1) return -1;
        return ::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC);
    }

  private:
    Descriptor socket_;
    int family_;
    bool isThere_ = false;
    std::uint16_t number_ = 0;
};

inline std::string receiveAll(int connection) {
    std::string received;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t size = ::recv(connection, buffer.data(), buffer.size(), 0);
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return received;
        received.append(buffer.data(), static_cast<std::size_t>(size));
    }
}

inline std::string receiveExactly(int connection, std::size_t size) {
    std::string received(size, '\0');
    const ssize_t got = ::recv(connection, received.data(), size, MSG_WAITALL);
    received.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return received;
}

// False when the other side is gone.
inline bool sendAll(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

// Closed after this, the connection is reset.
inline void resetWhenClosed(int connection) {
    const linger atOnce{1, 0};
    EXPECT_EQ(::setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce), 0);
}

// Accepts one connection and gives it to `play`, on a thread of its own; closes it after that.
class Peer {
  public:
    Peer(Port& port, std::function<void(int connection)> play)
        : thread_([&port, play = std::move(play)] {
              const Descriptor connection(port.accept());
              ASSERT_GE(connection.get(), 0) << "nobody has connected";
              play(connection.get());
          }) {}
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer() { finish(); }

    // Until the connection is closed.
    void finish() {
        if (thread_.joinable()) thread_.join();
    }

  private:
    std::thread thread_;
};

}  // namespace tavio::links::test
