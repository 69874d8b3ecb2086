// The printer as a device: what is between a connection and the paper. A receive buffer, the speed
// of the link and of the paper, the end of the paper, and the faults that printers have.
//
// It has no clock and no socket of its own: the caller says what time it is and what the client
// did, asks what the device does to the connection, and asks when to come back. So the same device
// stands behind a TCP port, behind a pseudo-terminal, and in tests whose clock is a variable.
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
    // Bytes received and not yet interpreted that there is room for, 1 to kMaxReceiveBuffer.
    std::size_t receiveBuffer = std::size_t{64} << 10U;

    // What becomes of bytes that there is no room for: they wait with the sender, or are lost (and
    // are a problem of the ticket).
    bool dropWhenFull = false;

    // Of the link, 0.001 to 100,000,000; 0: no limit. A byte never comes before its time; it comes
    // up to 10 ms after it, with others. What an idle link saves up is at most 50 ms worth.
    double bytesPerSecond = 0;

    // Paper passes the head at this speed once a ticket ends, 0.01 to 100,000; until the ticket's
    // height is through, nothing is interpreted. 0: at once.
    double millimetresPerSecond = 0;
};

inline constexpr std::size_t kMaxReceiveBuffer = std::size_t{16} << 20U;
inline constexpr double kMinMillimetresPerSecond = 0.01;
inline constexpr double kMaxMillimetresPerSecond = 100000;

// All of a connection; each connection begins anew.
struct Faults {
    // Bytes are not taken from the connection at all, its end is not noticed, and nothing is
    // answered.
    bool neverRead = false;

    // Bytes received, lost ones included; then the connection is reset, or closed. Exactly so many
    // are received, never more.
    std::optional<std::uint64_t> resetAfter = std::nullopt;
    std::optional<std::uint64_t> closeAfter = std::nullopt;

    // Once so many tickets have come out since the start, or since loadPaper(), nothing is
    // interpreted until loadPaper(). With 0 nothing ever is.
    std::optional<std::uint64_t> paperOutAfter = std::nullopt;
};

struct Reply {
    // Sent after each ticket, and to a client that has sent nothing for kSilence since it
    // connected. At most kMaxReplyTextBytes; "": never. Of answers that nobody takes 1,000 are kept.
    std::string text{};

    // From the ticket's end, or the end of the silence, to the answer; at most kMaxReplyDelay.
    std::chrono::milliseconds delay{0};

    static constexpr std::chrono::milliseconds kSilence{200};
};

// Of one reply that a user sets. How much a link keeps of all that a printer sends is another
// matter (links::kMaxReplyBytes).
inline constexpr std::size_t kMaxReplyTextBytes = 4096;
inline constexpr std::chrono::hours kMaxReplyDelay{24};

struct DeviceSettings {
    PrinterSettings printer{};
    Physics physics{};
    Faults faults{};
    Reply reply{};
};

// What the device wants done to the client's connection.
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

// One client at a time: whoever comes meanwhile waits at the door. Logos outlive connections. Takes
// a bounded amount of memory whatever comes: the receive buffer, the logo memory, one ticket with
// its problems and its kMaxTicketBytes, and the answers.
//
// What it does depends on what it is told and on the times given alone: it is the same however the
// bytes of one moment are cut into calls, and however often advance() is called. Times should not go
// back; one that does counts as the latest. OnTicket is called within the calls, and must not call
// the device.
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

    // A client is there: a new stream begins. Without effect while the device is not free.
    void connect(Time now);

    // The client will send no more. What it sent is still interpreted, and the last ticket comes
    // out when that is done.
    void endOfStream(Time now);

    // The client is gone, in whatever way. What was received is still interpreted, as a printer
    // with a buffer does; the next client waits until then (isFree()).
    void disconnect(Time now);

    // Whether a client may connect.
    bool isFree() const;

    // How many bytes may be given to receive() now. With dropWhenFull, bytes for which the buffer
    // has no room count too. 0 while the link's speed, the buffer or a fault says wait, and without
    // a client. What would be due by now, but has not been advanced to, is not yet counted.
    std::size_t room(Time now) const;

    // Takes the first room(now) of the bytes and ignores the rest.
    void receive(std::span<const Byte> bytes, Time now);

    // Has everything happen that is due by now.
    void advance(Time now);

    // When something will be due without anything from outside; none when nothing will. A reply
    // that is due already does not count.
    std::optional<Time> nextEvent() const;

    // Bytes for the client that are due; "" most of the time.
    std::string takeReply(Time now);

    ConnectionWish wish() const;

    // After endOfStream(): everything has been interpreted, the paper of the last ticket is through
    // and all replies have been taken. The device is ready to close its side.
    bool isDone() const;

    // New paper: what paperOutAfter stopped goes on, and it counts anew.
    void loadPaper(Time now);

    DeviceState state() const;

  private:
    class Works;
    std::unique_ptr<Works> works_;
};

}  // namespace tavio::virtual_printer
