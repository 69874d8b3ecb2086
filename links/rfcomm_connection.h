// Connecting to a Bluetooth printer's serial port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavio/links/rfcomm_address.h"
#include "tavio/links/stream_link.h"

namespace tavio::links {

// If a connection falls silent while the kernel has many bytes to send on it, the kernel blocks
// connect() and close() of all RFCOMM sockets, even of non-blocking ones, until it gives the
// connection up: more than a minute. So both are called on threads of their own, which may outlive
// this object; `calls` must outlive them. The kernel holds a program that ends meanwhile until
// then.
class RfcommConnection : public Connection {
  public:
    // `printer` as in rfcomm_address.h; with anything else open() fails.
    RfcommConnection(std::string printer, SystemCalls& calls);

    // Tries again for a moment if the kernel or the printer is still ending an earlier connection.
    int open(const std::string& address, Waiter& waiter, Failure& failure) override;
    ssize_t send(int descriptor, std::span<const Byte> bytes) override;
    ssize_t receive(int descriptor, std::span<Byte> bytes) override;

    // In the kernel's units, which are more than the bytes themselves; 0 means that all have left
    // the socket's queue.
    std::optional<std::uint64_t> unsent(int descriptor) override;
    bool isAcknowledged() const override { return false; }

    // The kernel always ends both directions of such a socket.
    bool endSending(int /*descriptor*/) override { return false; }

    // The same with and without `abort`: the kernel cannot drop accepted bytes. It sends them for
    // up to 40 seconds, if the printer takes them, and refuses another connection to the same
    // printer until then.
    void close(int descriptor, bool abort) override;
    std::string peer() const override;

  private:
    // Each returns 0 or an error; after an error the socket is closed.
    int connect(int descriptor, Waiter& waiter);
    int beginConnecting(int descriptor, Waiter& waiter);

    std::string reasonFor(int error) const;

    std::string printer_;
    std::optional<RfcommAddress> address_;
    SystemCalls& calls_;

    // The value of SIOCOUTQ for the empty queue. Some kernels count the waiting bytes, others the
    // free ones; the waiting bytes are the distance from this value, either way.
    std::optional<int> emptyQueue_;
};

}  // namespace tavio::links
