// Two Bluetooth controllers of one machine, which btvirt emulates: the link connects from the one,
// the printer listens on the other.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

#include "tavio/links/rfcomm_address.h"

namespace tavio::links::test {

// Switches both controllers on and lets them be connected to. The address of the second one, none
// where there are not two.
std::optional<RfcommAddress> switchRadiosOn();

// The process that emulates them; none where the test is not run by run-in-qemu, and must leave the
// machine's controllers alone.
std::optional<pid_t> emulator();

// The printer: listens on an address, takes one connection at a time.
class RfcommPrinter {
  public:
    explicit RfcommPrinter(const RfcommAddress& address);
    RfcommPrinter(const RfcommPrinter&) = delete;
    RfcommPrinter& operator=(const RfcommPrinter&) = delete;
    ~RfcommPrinter();

    bool accept();

    // Waits for the next bytes; "" at the end of the connection.
    std::string take();

    // Until `size` bytes have come, or the end.
    std::string take(std::size_t size);

    bool say(const std::string& text);
    void hangUp();

  private:
    int listener_;
    int connection_ = -1;
};

}  // namespace tavio::links::test
