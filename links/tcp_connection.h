// Connecting to a printer over TCP.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavio/links/stream_link.h"
#include "tavio/links/tcp_address.h"

namespace tavio::links {

class TcpConnection : public Connection {
  public:
    explicit TcpConnection(SystemCalls& calls) : calls_(calls) {}

    int open(const std::string& address, Waiter& waiter, Failure& failure) override;

    // Passes on at most a few thousand bytes at once.
    ssize_t send(int descriptor, std::span<const Byte> bytes) override;
    ssize_t receive(int descriptor, std::span<Byte> bytes) override;

    // Exact until the sending direction is ended: the end counts as one byte.
    std::optional<std::uint64_t> unsent(int descriptor) override;
    bool isAcknowledged() const override { return true; }
    bool endSending(int descriptor) override;

    // With `abort`, the connection is reset: unsent bytes are dropped.
    void close(int descriptor, bool abort) override;
    std::string peer() const override;

  private:
    // A descriptor, or -1 with errno.
    int connectTo(const SocketAddress& address, Waiter& waiter);
    void setOptions(int descriptor);
    std::string cannotBeReached(int error) const;

    SystemCalls& calls_;
    std::optional<TcpAddress> address_;
};

}  // namespace tavio::links
