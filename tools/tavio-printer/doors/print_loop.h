// What goes on between clients and a device, one turn after the other.
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

// Knows the time from its caller. Not for more than one thread.
class PrintLoop {
  public:
    using Time = Device::Time;

    // Doors without a descriptor are looked at so often.
    static constexpr std::chrono::milliseconds kLookOut{50};

    // The device and the doors must outlive the loop.
    PrintLoop(Device& device, std::vector<Door*> doors, bool oneClient);

    // Does what can be done now without waiting.
    void turn(Time now);

    // What to wait for then: descriptors for poll(), and a time.
    std::vector<pollfd> descriptors(Time now) const;
    std::optional<Time> nextTurn(Time now) const;

    // What poll() found with them.
    void waited(std::span<const pollfd> polled, Time now);

    // From now on nobody is let in.
    void closeDoors() { doorsClosed_ = true; }

    // Nobody is there, and nothing of what somebody sent is still to be interpreted.
    bool isIdle() const { return !client_ && device_.isFree(); }

  private:
    bool letIn(Time now);
    bool turnAway();
    bool lookAtDoors() const;
    bool wantsBytes(Time now) const;
    void readFrom(Time now);
    void answer(Time now);
    void leave(Time now);

    Device& device_;
    std::vector<Door*> doors_;
    bool oneClient_;
    bool doorsClosed_ = false;
    bool knocked_ = false;     // poll() says that somebody is at a door
    bool doorsTired_ = false;  // but it is not possible to let them in: descriptors ran out

    std::unique_ptr<Client> client_;
    bool ended_ = false;   // the client will send no more
    bool hungUp_ = false;  // poll() would say so again and again
    std::string reply_;    // on its way to the client
    std::vector<Byte> bytes_;
};

}  // namespace tavio::virtual_printer
