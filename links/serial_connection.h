// Opening a serial device, and leaving it as it was found.
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
    // `device` as in serial_address.h; what is none makes open() fail.
    SerialConnection(std::string device, SystemCalls& calls);

    // Drops input that came before. Takes the line as local (CLOCAL): a cable without modem wires
    // is no hang-up. Whether closing lowers the wires (HUPCL) and whether the flow of bytes is
    // controlled by wires (CRTSCTS) stays as whoever runs the machine has set it for this device.
    int open(const std::string& address, Waiter& waiter, std::string& failure) override;
    ssize_t send(int descriptor, std::span<const Byte> bytes) override;
    ssize_t receive(int descriptor, std::span<Byte> bytes) override;
    std::optional<std::uint64_t> unsent(int descriptor) override;
    bool isAcknowledged() const override { return false; }
    bool endSending(int /*descriptor*/) override { return false; }

    // Puts the device's old settings back. `abort` drops both of its queues first: closing would
    // wait for them, and nothing is to go out later.
    void close(int descriptor, bool abort) override;
    std::string peer() const override;

  private:
    int openDevice(Waiter& waiter, std::string& failure);
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
