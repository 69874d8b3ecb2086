// A TCP connection as both its ends see it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <utility>

#include "TavioIpadSDK/machine/bytes.h"
#include "scenarios/event_queue.h"
#include "scenarios/virtual_wire.h"

namespace tavio::scenarios {

enum class ConnectAnswer : std::uint8_t { kAccepted, kRefused, kNone, kUnreachable };

struct Path {
    Duration latency = milliseconds(2);              // each way
    double bytesPerSecond = 0;                       // each way; 0: no limit
    std::size_t sendBuffer = std::size_t{4} << 20U;  // the most that this end's system keeps
    std::size_t window = std::size_t{64} << 10U;     // what the far end's system keeps unread
    ConnectAnswer answer = ConnectAnswer::kAccepted;
};

// The actual course of a connection, to judge a report by.
struct Truth {
    std::uint64_t accepted = 0;             // bytes that this end's system took
    std::uint64_t acknowledged = 0;         // of them, as far as this end's system knows
    std::uint64_t arrived = 0;              // bytes that the far end's system has, or had
    std::uint64_t readThere = 0;            // of them, read by the far program
    std::uint64_t replied = 0;              // bytes that the far program sent
    bool resetArrived = false;              // at this end
    bool resetThere = false;                // at the far end
    Time lastProgress{};                    // a byte accepted or acknowledged
    Time lastReplyByte{};                   // a byte of the reply given to the link
    std::uint64_t acknowledgedAtClose = 0;  // when the link closed its descriptor
    std::uint64_t acknowledgedAtEnd = 0;    // when the link saw that the printer sends no more
    std::uint64_t acceptedAtReply = 0;      // when the last bytes of the reply arrived
};

// This end follows Linux: where two systems differ in what they tell a program, it is the one.
class VirtualConnection {
  public:
    VirtualConnection(EventQueue& events, const Path& path);
    VirtualConnection(const VirtualConnection&) = delete;
    VirtualConnection& operator=(const VirtualConnection&) = delete;

    // This end, called by the link. Errors as by the system: -1 with errno.
    int connect();
    ssize_t send(std::span<const Byte> bytes);
    ssize_t receive(std::span<Byte> bytes);
    int endSending();
    int unsent(int* count) const;
    int takeError();
    void setSendBuffer(std::size_t size);
    void setAbortOnClose(bool abort) { abortOnClose_ = abort; }
    void close();
    short readiness() const;  // as poll() tells it
    bool isClosed() const { return closed_; }

    // The far end, called by the program there.
    std::size_t waitingThere() const { return truth_.arrived - truth_.readThere; }
    std::span<const Byte> readThere(std::size_t size);
    bool endThere() const { return endArrived_ && waitingThere() == 0; }
    bool isResetThere() const { return truth_.resetThere; }
    void sendThere(const std::string& reply);
    void endSendingThere();
    void closeThere();
    void resetThere();
    bool isGoneThere() const { return gone_; }

    // Which connection of the program there it is, from 0; none as long as it was not taken.
    void takenThereAs(std::size_t number) { numberThere_ = number; }
    std::optional<std::size_t> numberThere() const { return numberThere_; }

    // Both directions.
    void lose();
    void restore();

    // Calls `onReached` when the far end's system has the connection.
    void onReached(std::function<void()> onReached) { onReached_ = std::move(onReached); }

    const Truth& truth() const { return truth_; }
    std::span<const Byte> stream() const { return stream_; }  // everything accepted

  private:
    enum class State : std::uint8_t { kNew, kConnecting, kConnected, kDead };

    void reachFarEnd();
    void connectionAnswered(int error);
    void pump();
    void dataArrives(std::uint64_t end);
    void endArrives();
    void acknowledge(bool withEnd);
    void acknowledgementArrives(std::uint64_t upTo, std::uint64_t edge, bool withEnd);
    void replyArrives(const std::string& reply);
    void resetArrives();
    void sendResetThere();
    void sendResetHere();
    std::size_t freeHere() const;
    std::uint64_t edgeThere() const;

    EventQueue& events_;
    Path path_;
    std::function<void()> onReached_;
    VirtualWire there_;
    VirtualWire here_;
    Truth truth_;

    // This end.
    State state_ = State::kNew;
    int error_ = 0;  // pending, told once
    std::size_t sendBuffer_;
    bool abortOnClose_ = false;
    bool closed_ = false;
    Bytes stream_;
    std::deque<std::uint64_t> sends_;  // the end of each that is not acknowledged in full
    std::uint64_t freed_ = 0;          // bytes that this end's system keeps no more
    std::uint64_t sent_ = 0;
    std::uint64_t edge_;   // the far end has room up to here, as far as is known
    bool ending_ = false;  // the end is to follow the last byte
    bool endSent_ = false;
    bool endAcknowledged_ = false;
    bool endWasTold_ = false;
    bool endOfReply_ = false;  // the far end has ended its side
    std::string inbox_;

    // The far end.
    std::optional<std::size_t> numberThere_;
    bool endArrived_ = false;
    bool replyEnded_ = false;
    bool gone_ = false;     // its program has closed the connection
    bool aborted_ = false;  // and its system has forgotten it
    std::uint64_t announcedEdge_;
};

}  // namespace tavio::scenarios
