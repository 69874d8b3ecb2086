// Clients that come over the network.
#pragma once

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/door.h"
#include "tools/tavio-printer/doors/listen_address.h"

namespace tavio::virtual_printer {

class TcpDoor final : public Door {
  public:
    // Clients that the system lets wait before it lets further ones wait outside.
    static constexpr int kBacklog = 16;

    // `receiveBuffer`: bytes that the system is asked to hold for each connection; it makes it a
    // few thousand at least. Throws std::runtime_error, with one sentence, where the address
    // cannot be listened on.
    TcpDoor(const ListenAddress& address, std::size_t receiveBuffer);

    // With the port that was found where any was asked for.
    const ListenAddress& address() const { return address_; }

    int descriptor() const override { return listening_.get(); }
    std::unique_ptr<Client> accept() override;

  private:
    ListenAddress address_;
    machine::Descriptor listening_;
};

}  // namespace tavio::virtual_printer
