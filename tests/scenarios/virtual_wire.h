// One direction of a path through the network.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "scenarios/event_queue.h"

namespace tavio::scenarios {

// Packets arrive in the order in which they were sent. Those that meet a lost link vanish; the
// sender's system sends them again, at intervals that double, until the link is back. Nobody is
// told of it.
class VirtualWire {
  public:
    using OnArrival = std::function<void()>;

    // Bytes per second; 0: no limit.
    VirtualWire(EventQueue& events, Duration latency, double bytesPerSecond)
        : events_(events), latency_(latency), bytesPerSecond_(bytesPerSecond) {}

    void send(std::size_t size, OnArrival onArrival);

    // A packet that is not sent again, such as a reset.
    void sendOnce(std::size_t size, OnArrival onArrival);

    void lose();
    void restore();

    // The sender is gone: what vanishes, or has vanished, is not sent again.
    void abandon();

  private:
    struct Packet {
        std::uint64_t number;
        std::size_t size;
        bool once;
        Time sent;
        OnArrival onArrival;
    };

    void carry(Packet packet, Time from);
    void deliver(Packet packet);
    void arrive(Packet packet);

    EventQueue& events_;
    Duration latency_;
    double bytesPerSecond_;
    bool lost_ = false;
    bool abandoned_ = false;
    Time free_{};                   // when the last byte sent has left
    Time lastArrival_{};            // of what is under way
    std::vector<Packet> vanished_;  // to be sent again
    std::uint64_t sent_ = 0;
    std::uint64_t delivered_ = 0;
    std::map<std::uint64_t, OnArrival> early_;  // arrived before one that was sent before them
};

}  // namespace tavio::scenarios
