// The common part of links over a connection: waiting, counting and deadlines.
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
#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

class Waiter;

// One kind of connection. All calls are on the link's thread; the descriptor is non-blocking.
class TAVIO_API Connection {
  public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    virtual ~Connection() = default;

    // Connects, and waits through `waiter` until its deadline. Returns the descriptor, or -1 with
    // the reason in `failure`.
    virtual int open(const std::string& address, Waiter& waiter, Failure& failure) = 0;

    // Like send() and recv(): the number of bytes, or -1 with errno. 0 received bytes are the end.
    virtual ssize_t send(int descriptor, std::span<const Byte> bytes) = 0;
    virtual ssize_t receive(int descriptor, std::span<Byte> bytes) = 0;

    // Accepted bytes that have not arrived; none if that is not known (at the moment).
    virtual std::optional<std::uint64_t> unsent(int descriptor) = 0;

    // True if unsent() counts the bytes that the far end has not acknowledged; all others have
    // arrived.
    virtual bool isAcknowledged() const = 0;

    // Ends only the sending direction; false if the connection cannot do that, or it failed.
    virtual bool endSending(int descriptor) = 0;

    // Closes the descriptor; with `abort` it drops the bytes that have not left.
    virtual void close(int descriptor, bool abort) = 0;

    // The far end's name in messages, e.g. "the printer at 192.168.1.50:9100".
    virtual std::string peer() const = 0;
};

// Waits on descriptors until an event, the deadline or the cancelling of the link.
class TAVIO_API Waiter {
  public:
    enum class Result : std::uint8_t { kReady, kTimeOut, kCancelled, kFailed };  // kFailed: errno

    // `wakeUp` is a descriptor that is readable after the link was cancelled.
    Waiter(SystemCalls& calls, const std::atomic<bool>& cancelled, int wakeUp,
           SystemCalls::Time deadline);

    // Waits for `events` (POLLIN, POLLOUT, both or none), an error or a hang-up on the descriptor;
    // `ready` gets the events that came. With a descriptor of -1 it only waits. With `limit` it
    // waits no longer than that, and then kTimeOut does not mean the deadline.
    Result wait(int descriptor, short events, short& ready,
                std::optional<std::chrono::milliseconds> limit = std::nullopt);

    SystemCalls& calls() const { return calls_; }
    SystemCalls::Time deadline() const { return deadline_; }
    void setDeadline(SystemCalls::Time deadline) { deadline_ = deadline; }

  private:
    SystemCalls& calls_;
    const std::atomic<bool>& cancelled_;
    int wakeUp_;
    SystemCalls::Time deadline_;
};

// The common part of TcpLink, RfcommLink and SerialLink.
//
// While it writes it also reads, so that a printer that sends is never blocked by us. Bytes that
// come before the end of a write are no answer to the job. Up to kMaxReplyBytes are kept for
// read().
//
// The first failure breaks the connection off at once, so that no byte leaves after the report. If
// a printer breaks it off after it has all bytes, that is no failure but a remark in the report.
// The destructor closes.
class TAVIO_API StreamLink : public Link {
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
    bool awaitRoom(Waiter& waiter, std::optional<std::uint64_t>& minUnsent, short& ready);
    void countAccepted(std::size_t count);
    bool awaitArrival();
    bool awaitProgress(Waiter& waiter, std::chrono::milliseconds pause);
    void collectReply();
    void sayGoodbye();
    int awaitEnd();

    // Reads the received bytes without waiting, up to a limit. Returns 0 or the connection's error.
    int receivePending();
    void noteEnd();
    Text takeUnread();

    // The accepted bytes that have not arrived; also updates the report's `acknowledged`.
    std::optional<std::uint64_t> checkUnsent();
    bool hasEverything() const;

    // Each returns false and keeps the job's first failure.
    bool fail(const Failure& why);
    bool failBy(Waiter::Result result, const std::string& onTimeOut);
    bool handleDisconnect(int error);  // true if the far end has all bytes
    bool failOutOfMemory() noexcept;

    bool failIfCancelled();
    void remark(LinkRemark kind, const std::string& sentence);
    void closeDescriptor();
    Waiter waiterFor(std::chrono::milliseconds deadline) const;
    void reportProgress() noexcept;

    std::unique_ptr<Connection> connection_;
    Deadlines deadlines_;
    SystemCalls& calls_;
    std::atomic<bool> cancelled_{false};
    machine::Descriptor wakeUp_;      // an eventfd that cancel() makes readable
    int descriptor_ = -1;             // the connection's, which closes it
    bool inJob_ = false;              // also after an opening that failed
    bool ended_ = false;              // the far end sends no more
    std::uint64_t arrivedAtEnd_ = 0;  // bytes of the job that had arrived at the far end's end
    Bytes unread_;                    // received, not returned by read() yet
    Bytes reply_;                     // the first bytes received
    SystemCalls::Time lastReceived_;
    LinkReport report_;  // all but the reply
    ProgressObserver observer_;
};

}  // namespace tavio::links
