// The program at the far end: the loop that a server runs around a device.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "scenarios/event_queue.h"
#include "scenarios/virtual_connection.h"
#include "tools/tavio-printer/device/device.h"

namespace tavio::scenarios {

// The behaviour of a printer's network card, apart from the device.
struct ServerHabits {
    bool keepsOpen = false;                         // does not end its side when all is printed
    std::optional<std::uint64_t> endsSendingAfter;  // bytes received: ends its side, reads on
    Duration chatter{0};                            // sends a byte so often; 0: does not
};

class PrinterServer {
  public:
    PrinterServer(EventQueue& events, const virtual_printer::DeviceSettings& settings,
                  const ServerHabits& habits);

    // A client is at the door.
    void reached(VirtualConnection& connection) { atTheDoor_.push_back(&connection); }

    // Does all that there is to do now; true when that was anything.
    bool serve();

    // When it wants to be called again.
    std::optional<Time> nextEvent() const { return device_.nextEvent(); }

    // Another client has the printer from now until `until`: it sends the bytes, as
    // far as there is room, and then nothing.
    void occupy(std::span<const Byte> bytes, Duration until);

    virtual_printer::Device& device() { return device_; }
    const virtual_printer::Device& device() const { return device_; }
    const std::vector<virtual_printer::DeviceTicket>& tickets() const { return tickets_; }

    // Bytes that the device took, of each connection that it had.
    const std::vector<Bytes>& taken() const { return taken_; }

  private:
    bool acceptNext();
    bool serveClient();
    void takeBytes();
    void give(std::span<const Byte> bytes);
    void endConnection();
    void chat(VirtualConnection* connection);
    void released();

    EventQueue& events_;
    ServerHabits habits_;
    bool neverReads_;
    std::vector<virtual_printer::DeviceTicket> tickets_;
    virtual_printer::Device device_;
    std::deque<VirtualConnection*> atTheDoor_;
    VirtualConnection* client_ = nullptr;
    bool occupied_ = false;  // by a client that has no connection here
    bool ended_ = false;     // the device knows that the client will send no more
    std::vector<Bytes> taken_;
};

}  // namespace tavio::scenarios
