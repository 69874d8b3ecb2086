#include "scenarios/virtual_connection.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <utility>

namespace tavio::scenarios {
namespace {

constexpr std::size_t kSegment = 1460;

int fail(int error) {
    errno = error;
    return -1;
}

}  // namespace

VirtualConnection::VirtualConnection(EventQueue& events, const Path& path)
    : events_(events),
      path_(path),
      there_(events, path.latency, path.bytesPerSecond),
      here_(events, path.latency, path.bytesPerSecond),
      sendBuffer_(path.sendBuffer),
      edge_(path.window),
      announcedEdge_(path.window) {}

int VirtualConnection::connect() {
    if (state_ != State::kNew) return fail(state_ == State::kConnecting ? EALREADY : EISCONN);
    if (path_.answer == ConnectAnswer::kUnreachable) return fail(ENETUNREACH);
    state_ = State::kConnecting;
    events_.trace("connects");
    there_.send(0, [this] { reachFarEnd(); });
    return fail(EINPROGRESS);
}

void VirtualConnection::reachFarEnd() {
    if (path_.answer == ConnectAnswer::kNone || truth_.resetThere) return;
    const bool refused = path_.answer == ConnectAnswer::kRefused;
    here_.send(0, [this, refused] { connectionAnswered(refused ? ECONNREFUSED : 0); });
    if (!refused) onReached_();
}

void VirtualConnection::connectionAnswered(int error) {
    if (closed_) {
        if (error == 0) sendResetHere();
        return;
    }
    if (state_ != State::kConnecting) return;
    events_.trace(error == 0 ? "connected" : "refused");
    state_ = error == 0 ? State::kConnected : State::kDead;
    error_ = error;
}

// The bytes of one call of send() are kept until all of them are acknowledged.
std::size_t VirtualConnection::freeHere() const {
    const std::uint64_t kept = truth_.accepted - freed_;
    return kept >= sendBuffer_ ? 0 : sendBuffer_ - static_cast<std::size_t>(kept);
}

ssize_t VirtualConnection::send(std::span<const Byte> bytes) {
    if (error_ != 0) return fail(std::exchange(error_, 0));
    if (state_ == State::kDead || ending_) return fail(EPIPE);
    if (state_ != State::kConnected) return fail(state_ == State::kNew ? ENOTCONN : EAGAIN);
    const std::size_t count = std::min(bytes.size(), freeHere());
    if (count == 0) return bytes.empty() ? 0 : fail(EAGAIN);
    stream_.insert(stream_.end(), bytes.begin(),
                   bytes.begin() + static_cast<std::ptrdiff_t>(count));
    truth_.accepted += count;
    sends_.push_back(truth_.accepted);
    truth_.lastProgress = events_.now();
    pump();
    return static_cast<ssize_t>(count);
}

void VirtualConnection::pump() {
    if (state_ != State::kConnected) return;
    const std::uint64_t max = std::min<std::uint64_t>(truth_.accepted, edge_);
    while (sent_ < max) {
        const std::uint64_t size = std::min<std::uint64_t>(kSegment, max - sent_);
        sent_ += size;
        there_.send(static_cast<std::size_t>(size), [this, end = sent_] { dataArrives(end); });
    }
    if (ending_ && !endSent_ && sent_ == truth_.accepted) {
        endSent_ = true;
        there_.send(0, [this] { endArrives(); });
    }
}

ssize_t VirtualConnection::receive(std::span<Byte> bytes) {
    if (!inbox_.empty()) {
        const std::size_t count = std::min(bytes.size(), inbox_.size());
        std::copy_n(inbox_.begin(), count, bytes.begin());
        inbox_.erase(0, count);
        truth_.lastReplyByte = events_.now();
        return static_cast<ssize_t>(count);
    }
    if (endOfReply_) {
        if (!std::exchange(endWasTold_, true)) truth_.acknowledgedAtEnd = truth_.acknowledged;
        return 0;
    }
    if (error_ != 0) return fail(std::exchange(error_, 0));
    if (state_ == State::kDead) return 0;
    return fail(state_ == State::kNew ? ENOTCONN : EAGAIN);
}

int VirtualConnection::endSending() {
    if (state_ != State::kConnected) return fail(ENOTCONN);
    events_.trace("ends its side");
    ending_ = true;
    pump();
    return 0;
}

// Counts like the system: the end of the stream is one more.
int VirtualConnection::unsent(int* count) const {
    const bool countsEnd = ending_ && !endAcknowledged_;
    *count = static_cast<int>(truth_.accepted - truth_.acknowledged) + (countsEnd ? 1 : 0);
    return 0;
}

int VirtualConnection::takeError() {
    return std::exchange(error_, 0);
}

// The system doubles the requested size.
void VirtualConnection::setSendBuffer(std::size_t size) {
    sendBuffer_ = std::min(2 * size, path_.sendBuffer);
}

void VirtualConnection::close() {
    if (std::exchange(closed_, true)) return;
    truth_.acknowledgedAtClose = truth_.acknowledged;
    if (state_ != State::kConnected) {
        events_.trace("closes");
        state_ = State::kDead;
        return;
    }
    if (abortOnClose_ || !inbox_.empty()) {
        events_.trace("closes with a reset");
        sendResetHere();
        return;
    }
    events_.trace("closes");
    ending_ = true;
    pump();
}

short VirtualConnection::readiness() const {
    int events = 0;
    switch (state_) {
        case State::kNew:
            return POLLOUT | POLLHUP;
        case State::kConnecting:
            return 0;
        case State::kDead:
            events = POLLIN | POLLRDHUP | POLLOUT | POLLHUP;
            break;
        case State::kConnected:
            if (!inbox_.empty() || endOfReply_) events |= POLLIN;
            if (endOfReply_) events |= POLLRDHUP;
            if (endOfReply_ && ending_) events |= POLLHUP;
            if (ending_ || freeHere() * 3 >= sendBuffer_) events |= POLLOUT;
            break;
    }
    if (error_ != 0) events |= POLLERR;
    return static_cast<short>(events);
}

void VirtualConnection::acknowledgementArrives(std::uint64_t upTo, std::uint64_t edge,
                                               bool withEnd) {
    if (state_ != State::kConnected) return;
    if (upTo > truth_.acknowledged) {
        truth_.acknowledged = upTo;
        truth_.lastProgress = events_.now();
    }
    for (; !sends_.empty() && sends_.front() <= upTo; sends_.pop_front()) freed_ = sends_.front();
    edge_ = std::max(edge_, edge);
    endAcknowledged_ = endAcknowledged_ || withEnd;
    pump();
}

void VirtualConnection::replyArrives(const std::string& reply) {
    if (closed_) {
        sendResetHere();
        return;
    }
    if (state_ != State::kConnected) return;
    truth_.acceptedAtReply = truth_.accepted;
    events_.trace("reply arrives: " + std::to_string(reply.size()) + " bytes");
    inbox_ += reply;
}

void VirtualConnection::resetArrives() {
    if (state_ != State::kConnected) return;
    events_.trace("reset arrives here");
    truth_.resetArrived = true;
    error_ = endOfReply_ ? EPIPE : ECONNRESET;
    state_ = State::kDead;
    there_.abandon();
}

void VirtualConnection::sendResetHere() {
    state_ = State::kDead;
    there_.abandon();
    there_.sendOnce(0, [this] {
        if (gone_) return;
        events_.trace("reset arrives there");
        truth_.resetThere = true;
    });
}

void VirtualConnection::dataArrives(std::uint64_t end) {
    if (truth_.resetThere && !gone_) return;
    if (gone_) {
        sendResetThere();
        return;
    }
    truth_.arrived = end;
    events_.trace("has arrived: " + std::to_string(end));
    acknowledge(false);
}

void VirtualConnection::endArrives() {
    if (aborted_) sendResetThere();
    if (aborted_ || truth_.resetThere) return;
    events_.trace("end has arrived");
    endArrived_ = true;
    acknowledge(true);
}

std::uint64_t VirtualConnection::edgeThere() const {
    return truth_.readThere + path_.window;
}

void VirtualConnection::acknowledge(bool withEnd) {
    announcedEdge_ = edgeThere();
    here_.send(0, [this, upTo = truth_.arrived, edge = announcedEdge_, withEnd] {
        acknowledgementArrives(upTo, edge, withEnd);
    });
}

std::span<const Byte> VirtualConnection::readThere(std::size_t size) {
    const std::size_t count = std::min(size, waitingThere());
    const auto bytes = this->stream().subspan(static_cast<std::size_t>(truth_.readThere), count);
    truth_.readThere += count;
    const std::size_t worthTelling = std::min(kSegment, (path_.window + 1) / 2);
    if (edgeThere() - announcedEdge_ >= worthTelling) acknowledge(endArrived_);
    return bytes;
}

void VirtualConnection::sendThere(const std::string& reply) {
    if (reply.empty() || gone_ || replyEnded_ || truth_.resetThere) return;
    truth_.replied += reply.size();
    here_.send(reply.size(), [this, reply] { replyArrives(reply); });
}

void VirtualConnection::endSendingThere() {
    if (replyEnded_ || gone_ || truth_.resetThere) return;
    replyEnded_ = true;
    events_.trace("the printer ends its side");
    here_.send(0, [this] {
        if (closed_ && state_ == State::kDead) sendResetHere();
        if (state_ == State::kConnected) endOfReply_ = true;
    });
}

// With bytes unread it is a reset, as systems do.
void VirtualConnection::closeThere() {
    if (gone_) return;
    if (waitingThere() > 0) {
        resetThere();
        return;
    }
    endSendingThere();
    gone_ = true;
}

void VirtualConnection::resetThere() {
    if (gone_) return;
    gone_ = true;
    aborted_ = true;
    if (!truth_.resetThere) sendResetThere();
}

// This end would send its outstanding bytes again and get another reset.

void VirtualConnection::sendResetThere() {
    events_.trace("the printer's system sends a reset");
    const bool isRepeated = truth_.accepted > truth_.acknowledged || (ending_ && !endAcknowledged_);
    auto onArrival = [this] { resetArrives(); };
    isRepeated ? here_.send(0, onArrival) : here_.sendOnce(0, onArrival);
}

void VirtualConnection::lose() {
    events_.trace("the link is lost");
    there_.lose();
    here_.lose();
}

void VirtualConnection::restore() {
    events_.trace("the link is back");
    there_.restore();
    here_.restore();
}

}  // namespace tavio::scenarios
