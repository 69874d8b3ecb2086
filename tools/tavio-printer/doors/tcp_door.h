// Clients over TCP.
#pragma once

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/door.h"
#include "tools/tavio-printer/doors/listen_address.h"

namespace tavio::virtual_printer {

class TcpDoor final : public Door {
  public:
    // The listening socket's backlog.
    static constexpr int kBacklog = 16;

    // `receiveBuffer`: the size of each connection's receive buffer, which the system raises to a
    // few thousand bytes. Throws std::runtime_error, with one sentence, if it cannot listen on the
    // address.
    TcpDoor(const ListenAddress& address, std::size_t receiveBuffer);

    // With the real port.
    const ListenAddress& address() const { return address_; }

    int descriptor() const override { return listening_.get(); }
    std::unique_ptr<Client> accept() override;

  private:
    ListenAddress address_;
    machine::Descriptor listening_;
};

}  // namespace tavio::virtual_printer
