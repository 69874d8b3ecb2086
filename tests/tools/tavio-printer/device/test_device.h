// A device whose clock is a variable.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tavio-printer/device/device.h"

namespace tavio::virtual_printer::testing {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// 2 millimetres of paper.
inline constexpr TicketSize kSmallTicket{10, 100, 127};

inline std::span<const Byte> bytesOf(std::string_view text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

inline std::string textOf(std::span<const Byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

DeviceSettings smallDevice();

// A command, its count and bytes of one value: graphics(3, 0xFF) is "<G3>\xFF\xFF\xFF".
std::string graphics(std::size_t count, Byte value = 0xFF);

// "offset: text" for each.
std::vector<std::string> linesOf(const ProblemList& problems);

class TestDevice {
  public:
    explicit TestDevice(const DeviceSettings& settings = smallDevice());
    TestDevice(const TestDevice&) = delete;
    TestDevice& operator=(const TestDevice&) = delete;

    void connect() { device.connect(now); }
    void end() { device.endOfStream(now); }
    void disconnect() { device.disconnect(now); }
    void loadPaper() { device.loadPaper(now); }
    std::string reply() { return device.takeReply(now); }
    std::size_t room() const { return device.room(now); }

    void pass(nanoseconds time);

    // Sends as much as is taken at this moment. Returns how much.
    std::size_t offer(std::string_view text);

    // Sends all, going on in time as the device says. Returns how much it took in the end.
    std::size_t send(std::string_view text);

    // A whole connection, at the end of which the device is done.
    void print(std::string_view text);

    // Since the start.
    nanoseconds elapsed() const { return now - kStart; }

    // Until the next event; none when there is none.
    std::optional<nanoseconds> untilEvent() const;

    // Bytes of each ticket.
    std::vector<std::string> streams() const;
    std::vector<std::string> problemsOf(std::size_t ticket) const;

    static constexpr Device::Time kStart{std::chrono::hours(1000)};

    Device::Time now = kStart;
    std::vector<DeviceTicket> tickets;
    Device device;
};

}  // namespace tavio::virtual_printer::testing
