// The loop between clients and a device, one turn after the other.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <poll.h>
#include <span>
#include <string>
#include <vector>

#include "tools/tavio-printer/device/device.h"
#include "tools/tavio-printer/doors/door.h"

namespace tavio::virtual_printer {

// The caller passes the time. Used by one thread.
class PrintLoop {
  public:
    using Time = Device::Time;

    // The interval at which doors without a descriptor are polled.
    static constexpr std::chrono::milliseconds kPollInterval{50};

    // The device and the doors must outlive the loop.
    PrintLoop(Device& device, std::vector<Door*> doors, bool oneClient);

    // Does everything that can be done without waiting.
    void turn(Time now);

    // The descriptors for the next poll(), and the time at which it must end.
    std::vector<pollfd> descriptors(Time now) const;
    std::optional<Time> nextTurn(Time now) const;

    // Takes the result of poll().
    void waited(std::span<const pollfd> polled, Time now);

    // Accepts no more clients.
    void stopAccepting() { stopped_ = true; }

    // True if no client is connected and all received bytes have been interpreted.
    bool isIdle() const { return !client_ && device_.isFree(); }

  private:
    bool acceptClient(Time now);
    bool refuseClients();
    bool pollsDoors() const;
    bool wantsBytes(Time now) const;
    void readFrom(Time now);
    void sendReply(Time now);
    void endClient(Time now);

    Device& device_;
    std::vector<Door*> doors_;
    bool oneClient_;
    bool stopped_ = false;
    bool clientWaits_ = false;  // poll() reports a waiting client
    bool acceptFails_ = false;  // but accept() fails: no file descriptor is left

    std::unique_ptr<Client> client_;
    bool ended_ = false;   // the client sends no more
    bool hungUp_ = false;  // poll() would report it again and again
    std::string reply_;    // not sent to the client yet
    std::vector<Byte> bytes_;
};

}  // namespace tavio::virtual_printer
