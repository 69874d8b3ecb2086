// Opening a serial device, and restoring its settings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <termios.h>

#include "tavio/links/serial_address.h"
#include "tavio/links/stream_link.h"

namespace tavio::links {

class SerialConnection : public Connection {
  public:
    // `device` as in serial_address.h; with anything else open() fails.
    SerialConnection(std::string device, SystemCalls& calls);

    // Drops earlier input. Sets CLOCAL: a cable without modem wires is no hang-up. HUPCL and
    // CRTSCTS keep the device's settings.
    int open(const std::string& address, Waiter& waiter, Failure& failure) override;
    ssize_t send(int descriptor, std::span<const Byte> bytes) override;
    ssize_t receive(int descriptor, std::span<Byte> bytes) override;
    std::optional<std::uint64_t> unsent(int descriptor) override;
    bool isAcknowledged() const override { return false; }
    bool endSending(int /*descriptor*/) override { return false; }

    // Restores the device's old settings. `abort` drops both of its queues first: closing would
    // wait for them, and no byte may leave later.
    void close(int descriptor, bool abort) override;
    std::string peer() const override;

  private:
    int openDevice(Waiter& waiter, Failure& failure);
    bool prepare(int descriptor, std::string& failure);
    void waitForChip(int descriptor);
    void restore(int descriptor);
    std::string cannotBeOpened(int error) const;

    std::string device_;
    std::optional<SerialAddress> address_;
    SystemCalls& calls_;
    std::optional<termios> before_;
};

}  // namespace tavio::links
