// A printer's end of a TCP connection that takes little at a time.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <poll.h>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/loopback_peer.h"

namespace tavio::test {

// The connection as the printer has it.
class Client {
  public:
    explicit Client(int connection) : connection_(connection) {}

    // Reads until the client ends its side, or until so many bytes have come.
    void read() { received_ += links::test::receiveAll(connection_); }
    void read(std::size_t size) { received_ += links::test::receiveExactly(connection_, size); }

    void send(const std::string& text) const {
        EXPECT_TRUE(links::test::sendAll(connection_, text));
    }
    void resetWhenClosed() const { links::test::resetWhenClosed(connection_); }

    // Waits until there is something to read, and leaves it there.
    void waitForBytes() const { waitFor(POLLIN); }

    // Reads nothing, and waits until the client has broken off.
    void waitForBreak() const { waitFor(0); }

    const std::string& received() const { return received_; }

  private:
    void waitFor(short events) const {
        pollfd watched{connection_, events, 0};
        EXPECT_EQ(::poll(&watched, 1, 120'000), 1) << "nothing happened";
    }

    int connection_;
    std::string received_;
};

// Listens on 127.0.0.1 from its construction on, and does `act` with the first client, on a thread
// of its own; then closes. Its receive buffer is small, so that a client that is not read from
// feels it.
//
//   SocketPrinter printer([](Client& client) { client.read(); });
//   tavio({"cut", "--to", printer.target()});
//   EXPECT_EQ(printer.received(), "<p>");
class SocketPrinter {
  public:
    explicit SocketPrinter(std::function<void(Client&)> act)
        : port_(listening()), peer_(*port_, [this, act = std::move(act)](int connection) {
              Client client(connection);
              act(client);
              received_ = client.received();
          }) {}

    std::string address() const { return port_->address(); }
    std::string target() const { return "tcp://" + address(); }

    // Waits until it has finished, and returns the bytes that it read.
    std::string received() {
        peer_.finish();
        return received_;
    }

  private:
    static std::unique_ptr<links::test::Port> listening() {
        constexpr int kSmall = 4096;
        auto port = std::make_unique<links::test::Port>();
        port->setReceiveBuffer(kSmall);
        port->listen();
        return port;
    }

    std::string received_;
    std::unique_ptr<links::test::Port> port_;
    links::test::Peer peer_;
};

}  // namespace tavio::test
