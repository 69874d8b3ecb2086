#include "tavio/links/stream_link.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <exception>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "tavio/links/reply_text.h"
#include "tavio/links/stream_sentences.h"

namespace tavio::links {

namespace {

using std::chrono::milliseconds;

static_assert(std::atomic<bool>::is_always_lock_free, "cancel() is called in signal handlers");

constexpr short kBrokenOff = POLLERR | POLLHUP | POLLNVAL;

// No event announces room in the queue below the system's threshold, or that all bytes have
// arrived, so the link polls.
constexpr milliseconds kMinPause{1};
constexpr milliseconds kMaxPause{20};

// So the link exceeds a deadline by one of these intervals at most.
constexpr int kPollsPerDeadline = 50;

// The limit on reads at once, for a printer that never stops sending.
constexpr int kMaxReceives = 16;

milliseconds withinRange(milliseconds deadline) {
    return std::clamp(deadline, milliseconds{1}, milliseconds{std::chrono::hours{24}});
}

Deadlines withinRange(Deadlines deadlines) {
    for (milliseconds* each : {&deadlines.connect, &deadlines.progress, &deadlines.reply,
                               &deadlines.silence, &deadlines.goodbye}) {
        *each = withinRange(*each);
    }
    return deadlines;
}

milliseconds pollInterval(const Deadlines& deadlines) {
    return std::max(deadlines.progress / kPollsPerDeadline, kMinPause);
}

Failure tooManyFiles() {
    return {FailureKind::kNotReached, "no connection can be made: too many files are open"};
}

Failure brokenOff(std::string sentence) {
    return {FailureKind::kBrokenOff, std::move(sentence)};
}

bool wouldWait(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

}  // namespace

StreamLink::StreamLink(std::unique_ptr<Connection> connection, const Deadlines& deadlines,
                       SystemCalls& calls)
    : connection_(std::move(connection)),
      deadlines_(withinRange(deadlines)),
      calls_(calls),
      wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StreamLink::~StreamLink() {
    StreamLink::close();
}

void StreamLink::cancel() noexcept {
    const int error = errno;
    cancelled_.store(true);
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp_.get(), &one, sizeof one);
    errno = error;
}

std::string StreamLink::failure() const {
    return report_.failure;
}

LinkReport StreamLink::report() const {
    assert(report_.accepted <= report_.offered);
    assert(report_.acknowledged.value_or(0) <= report_.accepted);
    LinkReport report = report_;
    if (!reply_.empty()) report.reply = replyText(reply_);
    return report;
}

void StreamLink::observeProgress(ProgressObserver observer) {
    observer_ = std::move(observer);
}

Waiter StreamLink::waiterFor(milliseconds deadline) const {
    return {calls_, cancelled_, wakeUp_.get(), calls_.now() + deadline};
}

// ---- Opening ------------------------------------------------------------------------------------

void StreamLink::beginJob() {
    report_ = {};
    if (connection_->isAcknowledged()) report_.acknowledged = 0;
    unread_.clear();
    reply_.clear();
    ended_ = false;
    arrivedAtEnd_ = 0;
    inJob_ = true;
}

bool StreamLink::open(const std::string& address) try {
    close();
    beginJob();
    if (failIfCancelled()) return false;
    if (!wakeUp_.isOpen()) return fail(tooManyFiles());
    Waiter waiter = waiterFor(deadlines_.connect);
    Failure why;
    descriptor_ = connection_->open(address, waiter, why);
    if (failIfCancelled()) return false;
    return descriptor_ >= 0 || fail(why);
} catch (const std::exception&) {
    return failOutOfMemory();
}

// ---- Writing ------------------------------------------------------------------------------------

bool StreamLink::write(std::span<const Byte> bytes) try {
    if (!inJob_) return false;
    report_.offered += bytes.size();
    if (!report_.failure.empty() || failIfCancelled()) return false;
    return bytes.empty() || sendAll(bytes);
} catch (const std::exception&) {
    return failOutOfMemory();
}

bool StreamLink::sendAll(std::span<const Byte> bytes) {
    Waiter waiter = waiterFor(deadlines_.progress);
    std::optional<std::uint64_t> minUnsent;
    short ready = 0;
    while (!bytes.empty()) {
        if (failIfCancelled()) return false;
        if (descriptor_ < 0) return fail(brokenOff(closedSentence(connection_->peer())));
        if (const int error = receivePending(); error != 0) return handleDisconnect(error);
        const ssize_t sent = connection_->send(descriptor_, bytes);
        if (sent > 0) {
            countAccepted(static_cast<std::size_t>(sent));
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
            waiter.setDeadline(calls_.now() + deadlines_.progress);
            minUnsent.reset();
            ready = 0;
        } else if (sent == 0 || wouldWait(errno)) {
            if (!awaitRoom(waiter, minUnsent, ready)) return false;
        } else if (errno != EINTR) {
            return handleDisconnect(errno);
        }
    }
    return true;
}

void StreamLink::countAccepted(std::size_t count) {
    report_.accepted += count;
    report_.answered = false;
    reportProgress();
}

// Waits after a send that took nothing. `ready` is the result of the wait before it, 0 if there was
// none: if poll() reports room but send() takes nothing, there must be a pause. The system reports
// room only if there is much of it; a slow printer that takes a little now and then shows in the
// number of unsent bytes, whose minimum so far is `minUnsent`.
bool StreamLink::awaitRoom(Waiter& waiter, std::optional<std::uint64_t>& minUnsent, short& ready) {
    const auto unsent = checkUnsent();
    if (unsent && minUnsent && *unsent < *minUnsent) {
        waiter.setDeadline(calls_.now() + deadlines_.progress);
    }
    minUnsent = unsent;
    if ((ready & kBrokenOff) != 0) return fail(brokenOff(closedSentence(connection_->peer())));
    const std::string tooLate = idleSentence(connection_->peer(), "took", deadlines_.progress);
    if (calls_.now() >= waiter.deadline()) return fail({FailureKind::kTimeOut, tooLate});
    if ((ready & POLLOUT) != 0) {
        const auto result = waiter.wait(-1, 0, ready, kMinPause);
        const bool isOver =
            result == Waiter::Result::kCancelled || result == Waiter::Result::kFailed;
        return !isOver || failBy(result, tooLate);
    }
    const short events = ended_ ? POLLOUT : POLLOUT | POLLIN;
    const auto result = waiter.wait(descriptor_, events, ready, pollInterval(deadlines_));
    const bool goesOn = result == Waiter::Result::kReady || result == Waiter::Result::kTimeOut;
    return goesOn || failBy(result, tooLate);
}

// ---- Draining -----------------------------------------------------------------------------------

bool StreamLink::drain() try {
    if (!report_.failure.empty() || failIfCancelled()) return false;
    return descriptor_ < 0 || awaitArrival();
} catch (const std::exception&) {
    return failOutOfMemory();
}

bool StreamLink::awaitArrival() {
    Waiter waiter = waiterFor(deadlines_.progress);
    std::optional<std::uint64_t> minUnsent;
    milliseconds pause = kMinPause;
    for (;;) {
        if (failIfCancelled()) return false;
        const auto unsent = checkUnsent();
        if (unsent && minUnsent && *unsent < *minUnsent) reportProgress();
        if (!unsent || *unsent == 0) return true;
        if (!minUnsent || *unsent < *minUnsent) {
            minUnsent = unsent;
            waiter.setDeadline(calls_.now() + deadlines_.progress);
            pause = kMinPause;
        }
        if (!awaitProgress(waiter, pause)) return false;
        if (descriptor_ < 0) return true;  // disconnected, and the far end has all bytes
        pause = std::min({2 * pause, kMaxPause, pollInterval(deadlines_)});
    }
}

bool StreamLink::awaitProgress(Waiter& waiter, milliseconds pause) {
    const std::string tooLate =
        idleSentence(connection_->peer(), connection_->isAcknowledged() ? "acknowledged" : "took",
                     deadlines_.progress);
    if (calls_.now() >= waiter.deadline()) return fail({FailureKind::kTimeOut, tooLate});
    short ready = 0;
    const short events = ended_ ? 0 : POLLIN;
    const auto result = waiter.wait(descriptor_, events, ready, pause);
    if (result == Waiter::Result::kTimeOut) return true;
    if (result != Waiter::Result::kReady) return failBy(result, tooLate);
    if (const int error = receivePending(); error != 0) return handleDisconnect(error);
    return (ready & kBrokenOff) == 0 || handleDisconnect(0);
}

std::optional<std::uint64_t> StreamLink::checkUnsent() {
    if (descriptor_ < 0) return std::nullopt;
    const auto unsent = connection_->unsent(descriptor_);
    if (unsent && connection_->isAcknowledged()) {
        const std::uint64_t arrived = report_.accepted - std::min(*unsent, report_.accepted);
        report_.acknowledged = std::max(arrived, report_.acknowledged.value_or(0));
    }
    return unsent;
}

bool StreamLink::hasEverything() const {
    return report_.accepted == report_.offered && report_.acknowledged == report_.accepted;
}

// ---- Reading ------------------------------------------------------------------------------------

Text StreamLink::read() try {
    if (report_.failure.empty() && !failIfCancelled() && descriptor_ >= 0) collectReply();
    checkUnsent();
    return takeUnread();
} catch (const std::exception&) {
    failOutOfMemory();
    return std::nullopt;
}

void StreamLink::collectReply() {
    const SystemCalls::Time noReply = calls_.now() + deadlines_.reply;
    std::optional<SystemCalls::Time> longEnough;
    Waiter waiter = waiterFor(deadlines_.reply);
    for (;;) {
        if (const int error = receivePending(); error != 0) {
            handleDisconnect(error);
            return;
        }
        if (ended_ || unread_.size() >= kMaxReplyBytes) return;
        const SystemCalls::Time now = calls_.now();
        if (!unread_.empty()) {
            if (!longEnough) longEnough = now + deadlines_.reply;
            waiter.setDeadline(std::min(lastReceived_ + deadlines_.silence, *longEnough));
        } else {
            waiter.setDeadline(noReply);
        }
        if (now >= waiter.deadline()) return;
        short ready = 0;
        const auto result = waiter.wait(descriptor_, POLLIN, ready);
        if (result == Waiter::Result::kTimeOut) return;
        if (result != Waiter::Result::kReady) {
            failBy(result, "");
            return;
        }
        if ((ready & kBrokenOff) != 0 && (ready & POLLIN) == 0) {
            handleDisconnect(0);
            return;
        }
    }
}

int StreamLink::receivePending() {
    std::array<Byte, 4096> buffer{};
    for (int count = 0; count < kMaxReceives && !ended_; ++count) {
        const ssize_t size = connection_->receive(descriptor_, buffer);
        if (size < 0 && errno == EINTR) continue;
        if (size < 0) return wouldWait(errno) ? 0 : errno;
        if (size == 0) noteEnd();
        const auto bytes = std::span(buffer).first(static_cast<std::size_t>(size));
        if (bytes.empty()) break;
        lastReceived_ = calls_.now();
        appendUpTo(kMaxReplyBytes, unread_, bytes);
        appendUpTo(kMaxReplyBytes, reply_, bytes);
        report_.answered = report_.accepted == report_.offered;
    }
    return 0;
}

void StreamLink::noteEnd() {
    ended_ = true;
    checkUnsent();
    arrivedAtEnd_ = report_.acknowledged.value_or(report_.accepted);
}

Text StreamLink::takeUnread() {
    if (unread_.empty()) return std::nullopt;
    Text text = replyText(unread_);
    unread_.clear();
    return text;
}

// ---- Closing ------------------------------------------------------------------------------------

void StreamLink::close() try {
    if (!inJob_) return;
    if (drain() && descriptor_ >= 0) sayGoodbye();
    closeDescriptor();
    inJob_ = false;
} catch (const std::exception&) {
    failOutOfMemory();
    inJob_ = false;
}

// All bytes have arrived, as far as can be known: only a cancel makes the job fail from here on.
void StreamLink::sayGoodbye() {
    const bool endsAlone = connection_->endSending(descriptor_);
    int error = receivePending();
    // A printer that was sent nothing has nothing left to read.
    if (error == 0 && endsAlone && report_.offered > 0) error = awaitEnd();
    if (error != 0 && report_.offered > 0)
        remark(LinkRemark::kBrokenOff, brokenOffSentence(connection_->peer()));
    // The far end ended its side before the job had arrived, not in answer to our end.
    if (report_.remark.empty() && ended_ && arrivedAtEnd_ < report_.accepted) {
        remark(LinkRemark::kEndedEarly, endedEarlySentence(connection_->peer()));
    }
}

// Returns 0, or the error that ended the connection.
int StreamLink::awaitEnd() {
    Waiter waiter = waiterFor(deadlines_.goodbye);
    while (!ended_) {
        if (failIfCancelled()) return 0;
        short ready = 0;
        const auto result = waiter.wait(descriptor_, POLLIN, ready);
        if (result == Waiter::Result::kCancelled) continue;
        if (result == Waiter::Result::kFailed) return errno;
        if (result == Waiter::Result::kTimeOut) {
            remark(LinkRemark::kNotEnded, noEndSentence(connection_->peer(), deadlines_.goodbye));
            return 0;
        }
        if (const int error = receivePending(); error != 0) return error;
        if ((ready & kBrokenOff) != 0 && (ready & POLLIN) == 0) return ECONNRESET;
        if (!ended_ && calls_.now() >= waiter.deadline()) {
            remark(LinkRemark::kNotEnded, noEndSentence(connection_->peer(), deadlines_.goodbye));
            return 0;
        }
    }
    return 0;
}

void StreamLink::closeDescriptor() {
    if (descriptor_ < 0) return;
    const bool abort = !report_.failure.empty() && !hasEverything();
    connection_->close(std::exchange(descriptor_, -1), abort);
}

// ---- Failing ------------------------------------------------------------------------------------

bool StreamLink::fail(const Failure& why) {
    if (!report_.failure.empty()) return false;
    report_.failure = why.sentence.empty() ? std::string("the connection failed") : why.sentence;
    report_.failureKind = why.kind == FailureKind::kNone ? FailureKind::kOther : why.kind;
    remark(LinkRemark::kNone, "");
    if (descriptor_ < 0) return false;
    // The printer's last bytes may explain the failure.
    receivePending();
    checkUnsent();
    closeDescriptor();
    return false;
}

bool StreamLink::failBy(Waiter::Result result, const std::string& onTimeOut) {
    const int error = errno;
    if (result == Waiter::Result::kCancelled) return fail(cancelledFailure());
    if (result == Waiter::Result::kTimeOut) return fail({FailureKind::kTimeOut, onTimeOut});
    return fail(brokenOff(disconnectedSentence(connection_->peer(), error)));
}

// The connection is gone. That is a failure only if bytes have not arrived. True if it is none.
bool StreamLink::handleDisconnect(int error) {
    checkUnsent();
    const bool isOver = report_.offered == 0 ? !reply_.empty() : hasEverything();
    if (!isOver) {
        return fail(brokenOff(error == 0 ? closedSentence(connection_->peer())
                                         : disconnectedSentence(connection_->peer(), error)));
    }
    if (report_.offered > 0) remark(LinkRemark::kBrokenOff, brokenOffSentence(connection_->peer()));
    closeDescriptor();
    return true;
}

bool StreamLink::failOutOfMemory() noexcept {
    if (report_.failure.empty()) {
        report_.failure = "out of memory";  // short enough to need none
        report_.failureKind = FailureKind::kOutOfMemory;
    }
    closeDescriptor();
    return false;
}

bool StreamLink::failIfCancelled() {
    return cancelled_.load() && !fail(cancelledFailure());
}

void StreamLink::remark(LinkRemark kind, const std::string& sentence) {
    report_.remark = sentence;
    report_.remarkKind = kind;
}

// An exception of the observer is dropped.
void StreamLink::reportProgress() noexcept {
    try {
        if (observer_) observer_({report_.offered, report_.accepted});
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
}

}  // namespace tavio::links
