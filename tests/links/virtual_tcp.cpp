#include "links/virtual_tcp.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>

#include <gtest/gtest.h>

namespace tavio::links::test {

void VirtualTcp::acknowledge(std::size_t count) {
    count = std::min(count, queued.size());
    arrived += queued.substr(0, count);
    queued.erase(0, count);
}

void VirtualTcp::connected(int error) {
    connecting_ = error == 0 ? 0 : -error;
}

void VirtualTcp::after(Milliseconds time, std::function<void()> action) {
    events_.emplace(time_ + time, Event{std::move(action)});
}

void VirtualTcp::every(Milliseconds time, Milliseconds period, std::function<void()> action) {
    events_.emplace(time_ + time, Event{std::move(action), period});
}

void VirtualTcp::fail(const std::string& name, int error, int skip, int times) {
    failures_[name] = {error, skip, times};
}

VirtualTcp::Milliseconds VirtualTcp::elapsed() const {
    return std::chrono::duration_cast<Milliseconds>(time_ - start_);
}

bool VirtualTcp::fails(const std::string& name) {
    if (onCall) onCall(name);
    ++made[name];
    const auto found = failures_.find(name);
    if (found == failures_.end()) return false;
    Failure& failure = found->second;
    if (failure.skip > 0) {
        --failure.skip;
        return false;
    }
    if (failure.times == 0) return false;
    if (failure.times > 0) --failure.times;
    errno = failure.error;
    return true;
}

int VirtualTcp::socket(int domain, int /*type*/, int /*protocol*/) {
    if (fails("socket")) return -1;
    families.push_back(domain);
    open_.insert(nextDescriptor_);
    return nextDescriptor_++;
}

int VirtualTcp::connect(int descriptor, const sockaddr* /*address*/, socklen_t /*size*/) {
    EXPECT_TRUE(open_.contains(descriptor));
    if (fails("connect")) {
        connecting_ = errno == EINTR ? EINPROGRESS : -errno;
        return -1;
    }
    connecting_ = attempts_ < connects.size() ? connects.at(attempts_) : 0;
    ++attempts_;
    if (connecting_ == 0) return 0;
    errno = connecting_;
    return -1;
}

int VirtualTcp::setsockopt(int descriptor, int level, int name, const void* value, socklen_t size) {
    EXPECT_TRUE(open_.contains(descriptor));
    if (fails("setsockopt")) return -1;
    if (level == SOL_SOCKET && name == SO_LINGER) {
        linger given{};
        EXPECT_EQ(size, sizeof given);
        std::memcpy(&given, value, sizeof given);
        wasReset = given.l_onoff == 1 && given.l_linger == 0;
    } else if (size == sizeof(int)) {
        std::memcpy(&options[{level, name}], value, sizeof(int));
    }
    return 0;
}

int VirtualTcp::getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) {
    EXPECT_TRUE(open_.contains(descriptor));
    EXPECT_EQ(level, SOL_SOCKET);
    EXPECT_EQ(name, SO_ERROR);
    if (fails("getsockopt")) return -1;
    const int error = connecting_ < 0 ? -connecting_ : 0;
    std::memcpy(value, &error, *size);
    return 0;
}

ssize_t VirtualTcp::send(int descriptor, const void* bytes, std::size_t size) {
    EXPECT_TRUE(open_.contains(descriptor) && isConnected() && !hasEnded);
    if (fails("send")) return -1;
    if (broken_ != 0) {
        errno = EPIPE;
        return -1;
    }
    const std::size_t taken = std::min({size, maxPerSend, room - std::min(room, queued.size())});
    if (taken == 0) {
        errno = EAGAIN;
        return -1;
    }
    queued.append(static_cast<const char*>(bytes), taken);
    return static_cast<ssize_t>(taken);
}

ssize_t VirtualTcp::recv(int descriptor, void* bytes, std::size_t size) {
    EXPECT_TRUE(open_.contains(descriptor) && isConnected());
    if (fails("recv")) return -1;
    const std::size_t given = std::min(size, incoming_.size());
    if (given > 0) {
        std::memcpy(bytes, incoming_.data(), given);
        incoming_.erase(0, given);
        return static_cast<ssize_t>(given);
    }
    if (broken_ == 0 && ended_) return 0;
    errno = broken_ == 0 ? EAGAIN : broken_;
    return -1;
}

int VirtualTcp::shutdown(int descriptor, int how) {
    EXPECT_TRUE(open_.contains(descriptor));
    EXPECT_EQ(how, SHUT_WR);
    if (fails("shutdown")) return -1;
    if (broken_ != 0) {
        errno = ENOTCONN;
        return -1;
    }
    hasEnded = true;
    if (endsWhenWeEnd) ended_ = true;
    return 0;
}

int VirtualTcp::unsentBytes(int descriptor, int* count) {
    EXPECT_TRUE(open_.contains(descriptor));
    if (fails("unsentBytes")) return -1;
    *count = static_cast<int>(queued.size()) + (hasEnded ? 1 : 0);
    return 0;
}

int VirtualTcp::lookUp(const std::string& /*host*/, std::uint16_t /*port*/,
                       std::vector<SocketAddress>& addresses) {
    return onLookUp(addresses);
}

short VirtualTcp::stateOf(int descriptor, short events) const {
    EXPECT_TRUE(open_.contains(descriptor));
    short state = 0;
    if (connecting_ == EINPROGRESS) return state;
    const bool readable = !incoming_.empty() || ended_ || broken_ != 0;
    if (readable) state |= POLLIN;
    if (queued.size() < room || broken_ != 0) state |= POLLOUT;
    state = static_cast<short>(state & events);
    if (broken_ != 0 || connecting_ < 0) state |= POLLERR | POLLHUP;
    return state;
}

int VirtualTcp::look(pollfd* descriptors, nfds_t count) {
    int ready = 0;
    for (nfds_t i = 0; i < count; ++i) {
        pollfd& watched = descriptors[i];
        watched.revents = 0;
        if (watched.fd >= kFirstVirtualDescriptor) {
            watched.revents = stateOf(watched.fd, watched.events);
        } else if (watched.fd >= 0) {
            SystemCalls::poll(&watched, 1, 0);
        }
        if (watched.revents != 0) ++ready;
    }
    return ready;
}

// False when the time is over.
bool VirtualTcp::passTime(Time until) {
    if (events_.empty() || events_.begin()->first > until) {
        time_ = until;
        return false;
    }
    auto event = events_.extract(events_.begin());
    time_ = std::max(time_, event.key());
    event.mapped().action();
    if (event.mapped().period > Milliseconds(0)) {
        events_.emplace(time_ + event.mapped().period, std::move(event.mapped()));
    }
    return true;
}

int VirtualTcp::poll(pollfd* descriptors, nfds_t count, int milliseconds) {
    waits.push_back(milliseconds);
    if (fails("poll")) return -1;
    EXPECT_GE(milliseconds, 0) << "waits for good";
    if (!falseAlarms.empty() && descriptors[0].fd >= kFirstVirtualDescriptor) {
        descriptors[0].revents = falseAlarms.back();
        falseAlarms.pop_back();
        return 1;
    }
    if (takes && connecting_ == 0) acknowledge(queued.size());
    const bool isLookUp = descriptors[0].fd >= 0 && descriptors[0].fd < kFirstVirtualDescriptor;
    if (isLookUp && waitsForLookUp) return SystemCalls::poll(descriptors, count, 60'000);
    const Time until = time_ + Milliseconds(milliseconds);
    for (;;) {
        const int ready = look(descriptors, count);
        if (ready != 0) return ready;
        if (!passTime(until)) return 0;
    }
}

int VirtualTcp::close(int descriptor) {
    EXPECT_EQ(open_.erase(descriptor), 1U) << "closed twice, or never opened";
    if (fails("close")) return -1;
    return 0;
}

SocketAddress someAddress(std::uint8_t last) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(9100);
    address.sin_addr.s_addr = htonl(0xC0000200U + last);
    SocketAddress result;
    std::memcpy(&result.storage, &address, sizeof address);
    result.size = sizeof address;
    return result;
}

}  // namespace tavio::links::test
