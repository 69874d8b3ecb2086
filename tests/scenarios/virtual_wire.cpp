#include "scenarios/virtual_wire.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace tavio::scenarios {
namespace {

constexpr std::size_t kHeaderBytes = 40;
constexpr Duration kFirstRepeat = milliseconds(200);
constexpr Duration kMaxRepeat = std::chrono::seconds(120);

// When a packet that was sent at `sent` in vain is sent for the first time after `restored`.
Time repeatAfter(Time sent, Time restored) {
    Duration pause = kFirstRepeat;
    Time next = sent + pause;
    while (next < restored) {
        pause = std::min(2 * pause, kMaxRepeat);
        next += pause;
    }
    return next;
}

}  // namespace

void VirtualWire::send(std::size_t size, OnArrival onArrival) {
    carry({++sent_, size, false, events_.now(), std::move(onArrival)}, events_.now());
}

void VirtualWire::sendOnce(std::size_t size, OnArrival onArrival) {
    carry({++sent_, size, true, events_.now(), std::move(onArrival)}, events_.now());
}

void VirtualWire::carry(Packet packet, Time from) {
    Duration transmission{0};
    if (bytesPerSecond_ > 0) {
        const double seconds = static_cast<double>(packet.size + kHeaderBytes) / bytesPerSecond_;
        transmission = std::chrono::ceil<Duration>(std::chrono::duration<double>(seconds));
    }
    free_ = std::max(free_, from) + transmission;
    lastArrival_ = std::max(lastArrival_, free_ + latency_);
    auto shared = std::make_shared<Packet>(std::move(packet));
    events_.at(lastArrival_, [this, shared] { arrive(std::move(*shared)); });
}

void VirtualWire::arrive(Packet packet) {
    if (!lost_) {
        deliver(std::move(packet));
    } else if (packet.once || abandoned_) {
        packet.onArrival = [] {};
        deliver(std::move(packet));
    } else {
        vanished_.push_back(std::move(packet));
    }
}

void VirtualWire::deliver(Packet packet) {
    early_.emplace(packet.number, std::move(packet.onArrival));
    while (!early_.empty() && early_.begin()->first == delivered_ + 1) {
        ++delivered_;
        const auto next = early_.extract(early_.begin());
        next.mapped()();
    }
}

void VirtualWire::abandon() {
    abandoned_ = true;
    std::vector<Packet> forgotten;
    forgotten.swap(vanished_);
    for (Packet& packet : forgotten) {
        packet.onArrival = [] {};
        deliver(std::move(packet));
    }
}

void VirtualWire::lose() {
    lost_ = true;
}

void VirtualWire::restore() {
    lost_ = false;
    std::vector<Packet> again;
    again.swap(vanished_);
    for (Packet& packet : again) {
        const Time time = repeatAfter(packet.sent, events_.now());
        carry(std::move(packet), time);
    }
}

}  // namespace tavio::scenarios
