// The printer's device, between a connection and the paper: a receive buffer, the speeds of link
// and paper, the end of the paper, and the faults that printers have.
//
// It has no clock and no socket. The caller passes the time and the client's actions, and asks for
// the device's action on the connection and for its next event. So the same device works on a TCP
// port, on a pseudo-terminal, and in tests whose clock is a variable.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tavio/virtual-printer/printer.h"
#include "tools/tavio-printer/device/device_ticket.h"

namespace tavio::virtual_printer {

struct Physics {
    // The size of the buffer for received bytes that have not been interpreted, 1 to
    // kMaxReceiveBuffer.
    std::size_t receiveBuffer = std::size_t{64} << 10U;

    // If the buffer is full: false: the sender waits; true: further bytes are dropped (and are a
    // problem of the ticket).
    bool dropWhenFull = false;

    // The link's speed, 0.001 to 100,000,000; 0: no limit. A byte never comes before its time, but
    // up to 10 ms after it, together with others. After a pause, at most the bytes of 50 ms come at
    // once.
    double bytesPerSecond = 0;

    // The paper's speed, 0.01 to 100,000; 0: no limit. After a ticket the paper moves by the
    // ticket's height, and nothing is interpreted meanwhile.
    double millimetresPerSecond = 0;
};

inline constexpr std::size_t kMaxReceiveBuffer = std::size_t{16} << 20U;
inline constexpr double kMinMillimetresPerSecond = 0.01;
inline constexpr double kMaxMillimetresPerSecond = 100000;

// Faults of each connection.
struct Faults {
    // No byte is read from the connection, its end is not noticed, and nothing is answered.
    bool neverRead = false;

    // The connection is reset, or closed, after exactly so many received bytes, dropped ones
    // included.
    std::optional<std::uint64_t> resetAfter = std::nullopt;
    std::optional<std::uint64_t> closeAfter = std::nullopt;

    // After so many tickets since the start or the last loadPaper(), nothing is interpreted until
    // loadPaper(). With 0 there is never paper.
    std::optional<std::uint64_t> paperOutAfter = std::nullopt;
};

struct Reply {
    // Sent after each ticket, and to a client that has sent nothing for kSilence since it
    // connected. At most kMaxReplyTextBytes; "": never. At most 1,000 answers wait.
    std::string text{};

    // The delay from the ticket's end, or the end of the silence, to the answer; at most
    // kMaxReplyDelay.
    std::chrono::milliseconds delay{0};

    static constexpr std::chrono::milliseconds kSilence{200};
};

// The limit of one reply that a user sets. The number of bytes that a link keeps of a printer's
// replies is another matter (links::kMaxReplyBytes).
inline constexpr std::size_t kMaxReplyTextBytes = 4096;
inline constexpr std::chrono::hours kMaxReplyDelay{24};

struct DeviceSettings {
    PrinterSettings printer{};
    Physics physics{};
    Faults faults{};
    Reply reply{};
};

// The device's action on the client's connection.
enum class ConnectionWish : std::uint8_t { kKeep, kClose, kReset };

struct DeviceState {
    bool connected = false;
    bool paperOut = false;
    bool moving = false;           // paper is passing the head
    std::size_t waitingBytes = 0;  // received, not interpreted
    std::uint64_t received = 0;    // bytes of this connection
    std::uint64_t tickets = 0;     // since the start
    std::size_t logoBytes = 0;

    bool operator==(const DeviceState&) const = default;
};

// Serves one client at a time; others wait at the door. Logos outlive connections. Its memory is
// bounded: the receive buffer, the logo memory, one ticket with its problems and its
// kMaxTicketBytes, and the answers.
//
// Its behaviour depends only on the bytes and the times. It does not matter how the bytes of one
// moment are cut into calls, or how often advance() is called. Times should not go back; an earlier
// time counts as the latest one. OnTicket is called within the calls, and must not call the device.
//
//   device.connect(now);
//   while (...) {
//       device.advance(now);
//       auto wanted = device.room(now);                  // 0: leave it in the socket
//       if (wanted > 0) device.receive(readFromSocket(wanted), now);
//       sendToClient(device.takeReply(now));
//       if (device.wish() != ConnectionWish::kKeep) ...
//       waitForSocketOrUntil(device.nextEvent());
//   }
//   device.disconnect(now);
class Device {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using OnTicket = std::function<void(DeviceTicket)>;

    // Throws std::invalid_argument for settings outside their ranges.
    Device(const DeviceSettings& settings, OnTicket onTicket);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // A client connects: a new stream begins. No effect unless isFree().
    void connect(Time now);

    // The client sends no more. The rest of its bytes is still interpreted; then the last ticket
    // comes out.
    void endOfStream(Time now);

    // The client has disconnected. As in a printer with a buffer, the received bytes are still
    // interpreted; the next client waits until then (isFree()).
    void disconnect(Time now);

    // True if a client may connect.
    bool isFree() const;

    // The number of bytes that receive() takes now. With dropWhenFull, bytes that do not fit into
    // the buffer count too. 0 while the link's speed, the buffer or a fault forbids more, and
    // without a client. Call advance() first: events that are due count only after it.
    std::size_t room(Time now) const;

    // Takes the first room(now) of the bytes and ignores the rest.
    void receive(std::span<const Byte> bytes, Time now);

    // Processes all events that are due by now.
    void advance(Time now);

    // The time of the next event that needs no call from outside; none if there is none. A reply
    // that is due already does not count.
    std::optional<Time> nextEvent() const;

    // The bytes for the client that are due; often "".
    std::string takeReply(Time now);

    ConnectionWish wish() const;

    // After endOfStream(): true if all bytes have been interpreted, the paper has stopped and all
    // replies have been taken, so that the device can close its side.
    bool isDone() const;

    // Loads new paper: the device continues, and paperOutAfter counts from 0 again.
    void loadPaper(Time now);

    DeviceState state() const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace tavio::virtual_printer
