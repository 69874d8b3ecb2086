#include "tools/tavio-printer/doors/print_loop.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tavio::virtual_printer {
namespace {

constexpr std::size_t kMaxAtOnce = std::size_t{64} << 10U;

// The limit on clients that are refused in one turn, so that the served client gets its share.
constexpr int kMaxAtATime = 64;

}  // namespace

PrintLoop::PrintLoop(Device& device, std::vector<Door*> doors, bool oneClient)
    : device_(device), doors_(std::move(doors)), oneClient_(oneClient), bytes_(kMaxAtOnce) {}

void PrintLoop::turn(Time now) {
    device_.advance(now);
    if (pollsDoors()) {
        const bool opened = client_ ? refuseClients() : acceptClient(now);
        acceptFails_ = std::exchange(clientWaits_, false) && !opened;
    }
    if (!client_) return;
    readFrom(now);
    if (client_) sendReply(now);
    if (!client_) return;

    const ConnectionWish wish = device_.wish();
    if (wish == ConnectionWish::kReset) {
        client_->reset();
        endClient(now);
    } else if (wish == ConnectionWish::kClose || (device_.isDone() && reply_.empty())) {
        client_->close();
        endClient(now);
    }
}

// With a connected client the doors are polled only to refuse others. Without one, they stay closed
// until the device has interpreted the bytes of the last client.
bool PrintLoop::pollsDoors() const {
    if (stopped_) return false;
    return client_ ? oneClient_ : device_.isFree();
}

bool PrintLoop::acceptClient(Time now) {
    for (Door* door : doors_) {
        client_ = door->accept();
        if (!client_) continue;
        ended_ = false;
        hungUp_ = false;
        device_.connect(now);
        return true;
    }
    return false;
}

bool PrintLoop::refuseClients() {
    bool any = false;
    for (Door* door : doors_) {
        if (door->descriptor() < 0) continue;  // the waiting one may be the client itself
        for (int count = 0; count < kMaxAtATime; ++count) {
            const auto other = door->accept();
            if (!other) break;
            other->reset();
            any = true;
        }
    }
    return any;
}

bool PrintLoop::wantsBytes(Time now) const {
    return client_ && !ended_ && device_.room(now) > 0;
}

void PrintLoop::readFrom(Time now) {
    if (!wantsBytes(now)) return;
    hungUp_ = false;
    const std::size_t room = std::min(device_.room(now), bytes_.size());
    const Received received = client_->read(std::span(bytes_).first(room));
    switch (received.outcome) {
        case Received::Outcome::kBytes:
            device_.receive(std::span(bytes_).first(received.count), now);
            break;
        case Received::Outcome::kNothing:
            break;
        case Received::Outcome::kEnd:
            ended_ = true;
            device_.endOfStream(now);
            break;
        case Received::Outcome::kGone:
            endClient(now);
            break;
    }
}

void PrintLoop::sendReply(Time now) {
    if (reply_.empty()) reply_ = device_.takeReply(now);
    if (!reply_.empty() && !client_->write(reply_)) endClient(now);
}

void PrintLoop::endClient(Time now) {
    client_.reset();
    reply_.clear();
    device_.disconnect(now);
}

std::vector<pollfd> PrintLoop::descriptors(Time now) const {
    std::vector<pollfd> polled;
    const bool looking = pollsDoors() && !acceptFails_;
    for (const Door* door : doors_) {
        polled.push_back({looking ? door->descriptor() : -1, POLLIN, 0});
    }
    if (!client_) return polled;
    const int events = (wantsBytes(now) ? POLLIN : 0) | (reply_.empty() ? 0 : POLLOUT);
    const bool deaf = events == 0 && hungUp_;
    polled.push_back({deaf ? -1 : client_->descriptor(), static_cast<short>(events), 0});
    return polled;
}

std::optional<PrintLoop::Time> PrintLoop::nextTurn(Time now) const {
    std::optional<Time> next = device_.nextEvent();
    const bool blind = !client_ && std::any_of(doors_.begin(), doors_.end(), [](const Door* door) {
        return door->descriptor() < 0;
    });
    if (pollsDoors() && (blind || acceptFails_)) {
        next = std::min(next.value_or(Time::max()), now + kPollInterval);
    }
    return next;
}

void PrintLoop::waited(std::span<const pollfd> polled, Time now) {
    for (const pollfd& door : polled.first(doors_.size())) {
        if (door.revents != 0) clientWaits_ = true;
    }
    if (!client_) return;
    const pollfd& waited = polled.back();
    if ((waited.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0) return;
    if ((waited.events & POLLIN) != 0) return;  // read() reports it
    if (client_->losesBytesAtHangUp()) {
        endClient(now);
        return;
    }
    hungUp_ = true;
    reply_.clear();
}

}  // namespace tavio::virtual_printer
