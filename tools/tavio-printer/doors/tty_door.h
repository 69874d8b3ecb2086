// Clients over a serial device: a pseudo-terminal.
#pragma once

#include <string>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/door.h"

namespace tavio::virtual_printer {

// The program that has the device open is the client. A serial line has no connections: bytes that
// a second program writes before the first one's have been read belong to the same stream.
//
// A printer cannot hang up a serial line. After the client is closed or reset, its bytes are
// ignored until it closes the device.
class TtyDoor final : public Door {
  public:
    // Creates the device, in raw mode, and `link` as a symbolic link to it ("": none), which may
    // replace a link to another pseudo-terminal. Throws std::runtime_error, with one sentence, on
    // failure.
    explicit TtyDoor(const std::string& link);

    // Removes the link if it still points to the device.
    ~TtyDoor() override;

    const std::string& device() const { return device_; }

    int descriptor() const override { return -1; }
    std::unique_ptr<Client> accept() override;

  private:
    friend class TtyClient;

    void ignore() { ignoring_ = true; }  // until the client has closed the device
    void makeLink() const;
    void freshen() const;

    std::string link_;
    std::string device_;
    machine::Descriptor terminal_;  // the printer's end
    bool ignoring_ = false;
};

}  // namespace tavio::virtual_printer
