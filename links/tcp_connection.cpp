#include "tavio/links/tcp_connection.h"

#include <algorithm>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <system_error>

#include "tavio/links/address_lookup.h"
#include "tavio/links/connecting.h"
#include "tavio/links/stream_sentences.h"

namespace tavio::links {

namespace {

// Small, so that the link soon notices a printer that takes no more. The system doubles it for its
// bookkeeping.
constexpr int kSendBuffer = 8'192;

// An empty buffer takes all bytes of one send, however small it is. And if one large segment fills
// the buffer, every segment waits for a delayed acknowledgement: 2 MB/s on the loopback interface
// instead of hundreds.
constexpr std::size_t kMaxAtOnce = 4'096;

// Further addresses of one name are not tried.
constexpr std::size_t kMaxAddresses = 16;

}  // namespace

std::string TcpConnection::peer() const {
    return address_ ? "the printer at " + toText(*address_) : std::string("the printer");
}

std::string TcpConnection::cannotBeReached(int error) const {
    return peer().append(" cannot be reached: ").append(std::generic_category().message(error));
}

int TcpConnection::open(const std::string& address, Waiter& waiter, Failure& failure) {
    address_ = parseTcpAddress(address);
    if (!address_) {
        failure = {FailureKind::kBadAddress,
                   address.empty() ? std::string("no address of a printer was given")
                                   : std::string("\"").append(address).append(
                                         "\" is no network address such as 192.168.1.50:9100")};
        return -1;
    }
    failure.kind = FailureKind::kNotReached;
    auto addresses = findAddresses(*address_, waiter, failure.sentence);
    if (addresses.size() > kMaxAddresses) addresses.resize(kMaxAddresses);
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        const SystemCalls::Time now = calls_.now();
        const SystemCalls::Time::duration left = waiter.deadline() - now;
        if (i > 0 && left.count() <= 0) break;
        const auto attemptsLeft = static_cast<std::int64_t>(addresses.size() - i);
        Waiter attempt = waiter;
        attempt.setDeadline(now + left / attemptsLeft);
        const int descriptor = connectTo(addresses.at(i), attempt);
        const int error = errno;
        if (descriptor >= 0) return descriptor;
        if (error == ECANCELED) {
            failure = cancelledFailure();
            break;
        }
        failure.sentence = cannotBeReached(error);
    }
    return -1;
}

int TcpConnection::connectTo(const SocketAddress& address, Waiter& waiter) {
    const int descriptor = calls_.socket(address.storage.ss_family, SOCK_STREAM, 0);
    if (descriptor < 0) return -1;
    setOptions(descriptor);
    int error = 0;
    if (calls_.connect(descriptor, reinterpret_cast<const sockaddr*>(&address.storage),
                       address.size) != 0) {
        error = errno;
        // An interrupted connect continues by itself, like one in progress.
        if (error == EINPROGRESS || error == EINTR) error = finishConnecting(descriptor, waiter);
    }
    if (error == 0) return descriptor;
    calls_.close(descriptor);
    errno = error;
    return -1;
}

// Failures are harmless: the system's defaults apply.
void TcpConnection::setOptions(int descriptor) {
    const int on = 1;
    calls_.setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    calls_.setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

ssize_t TcpConnection::send(int descriptor, std::span<const Byte> bytes) {
    return calls_.send(descriptor, bytes.data(), std::min(bytes.size(), kMaxAtOnce));
}

ssize_t TcpConnection::receive(int descriptor, std::span<Byte> bytes) {
    return calls_.recv(descriptor, bytes.data(), bytes.size());
}

std::optional<std::uint64_t> TcpConnection::unsent(int descriptor) {
    int count = 0;
    if (calls_.unsentBytes(descriptor, &count) != 0 || count < 0) return std::nullopt;
    return static_cast<std::uint64_t>(count);
}

bool TcpConnection::endSending(int descriptor) {
    return calls_.shutdown(descriptor, SHUT_WR) == 0;
}

void TcpConnection::close(int descriptor, bool abort) {
    if (abort) {
        const linger atOnce{1, 0};
        calls_.setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    }
    calls_.close(descriptor);
}

}  // namespace tavio::links
