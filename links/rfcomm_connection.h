// Connecting to a Bluetooth printer's serial port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavio/links/rfcomm_address.h"
#include "tavio/links/stream_link.h"

namespace tavio::links {

// As long as a connection that the kernel is sending on has fallen silent, with much under way, the
// kernel blocks connect() and close() of all RFCOMM sockets, non-blocking ones too, until it gives
// the connection up: more than a minute. So both are called on threads of their own, which are left
// behind where that happens; `calls` must outlive them. A program that ends meanwhile is kept by the
// kernel until then.
class RfcommConnection : public Connection {
  public:
    // `printer` as in rfcomm_address.h; what is none makes open() fail.
    RfcommConnection(std::string printer, SystemCalls& calls);

    // Tries again for a moment where the kernel or the printer is still ending an earlier
    // connection.
    int open(const std::string& address, Waiter& waiter, std::string& failure) override;
    ssize_t send(int descriptor, std::span<const Byte> bytes) override;
    ssize_t receive(int descriptor, std::span<Byte> bytes) override;

    // In what the kernel counts, which is more than the bytes themselves; 0 says that all have left
    // the socket's queue.
    std::optional<std::uint64_t> unsent(int descriptor) override;
    bool isAcknowledged() const override { return false; }

    // The kernel ends both directions of such a socket whichever it is asked for.
    bool endSending(int /*descriptor*/) override { return false; }

    // The same with and without `abort`: the kernel has no way to take back what it accepted. It
    // goes on sending that for up to 40 seconds, if the printer takes it, and refuses another
    // connection to the same printer until then.
    void close(int descriptor, bool abort) override;
    std::string peer() const override;

  private:
    // Each: 0 or an error, after which the socket is closed.
    int connect(int descriptor, Waiter& waiter);
    int beginConnecting(int descriptor, Waiter& waiter);

    std::string reasonFor(int error) const;

    std::string printer_;
    std::optional<RfcommAddress> address_;
    SystemCalls& calls_;

    // What SIOCOUTQ said of the empty queue. Depending on the kernel it counts what waits in the
    // queue or what is free in it; the distance from here is what waits, either way.
    std::optional<int> emptyQueue_;
};

}  // namespace tavio::links
