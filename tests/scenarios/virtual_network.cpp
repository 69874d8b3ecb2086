#include "scenarios/virtual_network.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

namespace tavio::scenarios {
namespace {

// Far above what a test program has open.
constexpr int kFirstDescriptor = 1'000'000;

constexpr unsigned kMaxPollsWithoutTime = 20'000;
constexpr unsigned kMaxRounds = 20'000;

// POLLERR and POLLHUP come unasked.
short wanted(short events, short readiness) {
    return static_cast<short>(readiness & (events | POLLERR | POLLHUP));
}

}  // namespace

VirtualNetwork::VirtualNetwork(const NetworkPlan& plan)
    : plan_(plan), server_(events_, plan.device, plan.server), names_(plan.names) {}

void VirtualNetwork::lose() {
    lost_ = true;
    for (const auto& connection : connections_) connection->lose();
}

void VirtualNetwork::restore() {
    lost_ = false;
    for (const auto& connection : connections_) connection->restore();
}

int VirtualNetwork::misused(const std::string& how) {
    if (misuse_.empty()) misuse_ = how;
    errno = EINVAL;
    return -1;
}

VirtualConnection* VirtualNetwork::find(int descriptor) {
    const auto found = descriptors_.find(descriptor);
    if (found != descriptors_.end()) return found->second;
    misused("uses descriptor " + std::to_string(descriptor) + ", which is not open");
    errno = EBADF;
    return nullptr;
}

int VirtualNetwork::socket(int /*domain*/, int type, int /*protocol*/) {
    if ((type & SOCK_STREAM) == 0) return misused("makes a socket of another kind than a stream");
    const int descriptor = kFirstDescriptor + static_cast<int>(connections_.size());
    Path path = plan_.path;
    if (connections_.size() < plan_.firstAnswers.size()) {
        path.answer = plan_.firstAnswers.at(connections_.size());
    }
    connections_.push_back(std::make_unique<VirtualConnection>(events_, path));
    VirtualConnection* connection = connections_.back().get();
    connection->onReached([this, connection] { server_.reached(*connection); });
    if (lost_) connection->lose();
    descriptors_[descriptor] = connection;
    return descriptor;
}

int VirtualNetwork::connect(int descriptor, const sockaddr* /*address*/, socklen_t /*size*/) {
    VirtualConnection* connection = find(descriptor);
    return connection == nullptr ? -1 : connection->connect();
}

int VirtualNetwork::setsockopt(int descriptor, int level, int name, const void* value,
                               socklen_t size) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    if (level != SOL_SOCKET) return 0;
    if (name == SO_SNDBUF && size == sizeof(int)) {
        int bytes = 0;
        std::memcpy(&bytes, value, sizeof(bytes));
        connection->setSendBuffer(static_cast<std::size_t>(std::max(bytes, 1)));
    }
    if (name == SO_LINGER && size == sizeof(linger)) {
        linger how{};
        std::memcpy(&how, value, sizeof(how));
        if (how.l_onoff != 0 && how.l_linger != 0) return misused("would wait in close()");
        connection->setAbortOnClose(how.l_onoff != 0);
    }
    return 0;
}

int VirtualNetwork::getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    if (level != SOL_SOCKET || name != SO_ERROR || *size < sizeof(int)) {
        return misused("asks for a socket option that a link has no use for");
    }
    const int error = connection->takeError();
    std::memcpy(value, &error, sizeof(error));
    *size = sizeof(error);
    return 0;
}

ssize_t VirtualNetwork::send(int descriptor, const void* bytes, std::size_t size) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    return connection->send({static_cast<const Byte*>(bytes), size});
}

ssize_t VirtualNetwork::recv(int descriptor, void* bytes, std::size_t size) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    return connection->receive({static_cast<Byte*>(bytes), size});
}

int VirtualNetwork::shutdown(int descriptor, int how) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    if (how != SHUT_WR) return misused("ends more than its own side");
    return connection->endSending();
}

int VirtualNetwork::unsentBytes(int descriptor, int* count) {
    VirtualConnection* connection = find(descriptor);
    return connection == nullptr ? -1 : connection->unsent(count);
}

int VirtualNetwork::close(int descriptor) {
    VirtualConnection* connection = find(descriptor);
    if (connection == nullptr) return -1;
    connection->close();
    descriptors_.erase(descriptor);
    return 0;
}

std::optional<Time> VirtualNetwork::nextTime() const {
    const std::optional<Time> event = events_.next();
    const std::optional<Time> device = server_.nextEvent();
    if (!event) return device;
    return device ? std::min(*event, *device) : event;
}

// Everything that is due now.
void VirtualNetwork::runDueEvents() {
    for (unsigned round = 0; round < kMaxRounds; ++round) {
        server_.serve();
        if (!events_.runOne()) {
            const std::optional<Time> device = server_.nextEvent();
            if (!device || *device > events_.now()) return;
        }
    }
    misused("is not at fault: the device has something due at once for ever");
}

int VirtualNetwork::lookUp(const std::string& /*host*/, std::uint16_t /*port*/,
                           std::vector<links::SocketAddress>& addresses) {
    return names_.lookUp(addresses);
}

// Two descriptors of the system's, and none of ours: the link waits for a name, and a thread that
// has no virtual time is at work.
void VirtualNetwork::awaitName(pollfd* descriptors, nfds_t count) {
    const auto isReal = [](const pollfd& one) { return one.fd >= 0 && one.fd < kFirstDescriptor; };
    if (count < 2 || !std::all_of(descriptors, descriptors + count, isReal)) return;
    names_.awaitQuestion();
    if (names_.answers()) ::poll(descriptors, count, -1);
}

int VirtualNetwork::ready(pollfd* descriptors, nfds_t count) {
    int found = 0;
    for (nfds_t i = 0; i < count; ++i) {
        pollfd& one = descriptors[i];
        one.revents = 0;
        if (one.fd < kFirstDescriptor) {
            if (one.fd >= 0) ::poll(&one, 1, 0);
        } else if (const VirtualConnection* connection = find(one.fd)) {
            one.revents = wanted(one.events, connection->readiness());
        } else {
            one.revents = POLLNVAL;
        }
        if (one.revents != 0) ++found;
    }
    return found;
}

int VirtualNetwork::poll(pollfd* descriptors, nfds_t count, int timeout) {
    pollsWithoutTime_ = lastPoll_ == events_.now() ? pollsWithoutTime_ + 1 : 0;
    lastPoll_ = events_.now();
    if (pollsWithoutTime_ > kMaxPollsWithoutTime) return misused("polls without ever waiting");
    const bool forever = timeout < 0;
    const Time deadline = events_.now() + milliseconds(std::max(timeout, 0));
    awaitName(descriptors, count);
    while (true) {
        runDueEvents();
        const int found = ready(descriptors, count);
        if (found > 0) return found;
        if (!forever && events_.now() >= deadline) return 0;
        const std::optional<Time> next = nextTime();
        if (forever && !next) return misused("would wait for ever");
        events_.advanceTo(forever ? *next : std::min(next.value_or(deadline), deadline));
    }
}

void VirtualNetwork::settle(Duration limit) {
    const Time deadline = events_.now() + limit;
    runDueEvents();
    for (auto next = nextTime(); next && *next <= deadline; next = nextTime()) {
        events_.advanceTo(*next);
        runDueEvents();
    }
}

}  // namespace tavio::scenarios
