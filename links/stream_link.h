// What the links over a connection have in common: waiting, counting, and giving up in time.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

class Waiter;

// One kind of connection. All calls are on the link's thread; the descriptor is non-blocking.
class Connection {
  public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    virtual ~Connection() = default;

    // Connects, waiting through `waiter` at most until its deadline. The descriptor, or -1 with one
    // sentence in `failure`.
    virtual int open(const std::string& address, Waiter& waiter, std::string& failure) = 0;

    // As send() and recv(): the number of bytes, -1 with errno. 0 received is the end.
    virtual ssize_t send(int descriptor, std::span<const Byte> bytes) = 0;
    virtual ssize_t receive(int descriptor, std::span<Byte> bytes) = 0;

    // Bytes accepted that have not arrived; none where that cannot be told (now).
    virtual std::optional<std::uint64_t> unsent(int descriptor) = 0;

    // Whether unsent() counts what the far end has not acknowledged, so that what it does not count
    // has arrived.
    virtual bool isAcknowledged() const = 0;

    // Ends the sending direction alone; false where the connection has no such thing, or it failed.
    virtual bool endSending(int descriptor) = 0;

    // Closes the descriptor; with `abort` in the way that drops what has not left.
    virtual void close(int descriptor, bool abort) = 0;

    // What failures call the far end, e.g. "the printer at 192.168.1.50:9100".
    virtual std::string peer() const = 0;
};

// Waits on descriptors until something happens, the deadline passes or the link is cancelled.
class Waiter {
  public:
    enum class Result : std::uint8_t { kReady, kTimeOut, kCancelled, kFailed };  // kFailed: errno

    // `wakeUp` is a descriptor that is readable once the link has been cancelled.
    Waiter(SystemCalls& calls, const std::atomic<bool>& cancelled, int wakeUp,
           SystemCalls::Time deadline);

    // Waits for `events` (POLLIN, POLLOUT, both or none) on the descriptor, which errors and
    // hang-ups end as well; `happened` is what did. A descriptor of -1 only waits. With `atMost`
    // it does not wait longer than that, and kTimeOut does not mean the deadline then.
    Result wait(int descriptor, short events, short& happened,
                std::optional<std::chrono::milliseconds> atMost = std::nullopt);

    SystemCalls& calls() const { return calls_; }
    SystemCalls::Time deadline() const { return deadline_; }
    void setDeadline(SystemCalls::Time deadline) { deadline_ = deadline; }

  private:
    SystemCalls& calls_;
    const std::atomic<bool>& cancelled_;
    int wakeUp_;
    SystemCalls::Time deadline_;
};

// The work common to TcpLink, RfcommLink and SerialLink.
//
// While it writes it also reads, so that a printer that talks is never stuck on us. What was
// pending when a write began, or came during it, is no answer to the job. What read() has not given
// yet is kept up to kMaxReplyBytes.
//
// The first failure breaks the connection off at once, so that nothing goes out later that the
// report does not know of. Where a printer that has everything breaks it off, that is no failure
// but a remark in the report. The destructor closes.
class StreamLink : public Link {
  public:
    StreamLink(std::unique_ptr<Connection> connection, const Deadlines& deadlines,
               SystemCalls& calls);
    ~StreamLink() override;

    bool open(const std::string& address) override;
    bool write(std::span<const Byte> bytes) override;
    bool drain() override;
    Text read() override;
    void close() override;
    void cancel() noexcept override;
    std::string failure() const override;
    LinkReport report() const override;
    void observeProgress(ProgressObserver observer) override;

  private:
    void beginJob();
    bool sendAll(std::span<const Byte> bytes);
    bool awaitRoom(Waiter& waiter, std::optional<std::uint64_t>& least, short& happened);
    void noteAccepted(std::size_t count);
    bool awaitArrival();
    bool awaitProgress(Waiter& waiter, std::chrono::milliseconds pause);
    void collectReply();
    void sayGoodbye();
    int awaitEnd();

    // All that has come in, up to a bound, without waiting: 0, or the error that ended it.
    int receivePending();
    void noteEnd();
    Text takeUnread();

    // Of the bytes accepted, those that have not arrived; the report's acknowledged with it.
    std::optional<std::uint64_t> lookAtUnsent();
    bool hasEverything() const;

    // Each returns false, the first failure being kept.
    bool fail(const std::string& why);
    bool failBy(Waiter::Result result, const std::string& onTimeOut);
    bool lose(int error);  // unless nothing is missing at the far end
    bool failOutOfMemory() noexcept;

    bool failIfCancelled();
    void closeDescriptor();
    Waiter waiterFor(std::chrono::milliseconds deadline) const;
    void tellProgress() noexcept;

    std::unique_ptr<Connection> connection_;
    Deadlines deadlines_;
    SystemCalls& calls_;
    std::atomic<bool> cancelled_{false};
    machine::Descriptor wakeUp_;      // an eventfd that cancel() makes readable
    int descriptor_ = -1;             // the connection's, which closes it
    bool inJob_ = false;              // also after an opening that failed
    bool ended_ = false;              // the far end sends no more
    std::uint64_t arrivedAtEnd_ = 0;  // bytes of the job that had arrived when it was seen to end
    Bytes unread_;                    // received and not given yet
    Bytes reply_;                     // the first bytes of all that was received
    SystemCalls::Time lastReceived_;
    LinkReport report_;  // all but the reply
    ProgressObserver observer_;
};

}  // namespace tavio::links
