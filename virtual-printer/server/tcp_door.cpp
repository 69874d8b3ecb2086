#include "virtual-printer/server/tcp_door.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>

namespace tavio::virtual_printer {
namespace {

constexpr int kSocketFlags = SOCK_NONBLOCK | SOCK_CLOEXEC;

// What is thrown away of a client whose connection is closed while it sends.
constexpr std::size_t kMostDiscarded = std::size_t{1} << 20U;

std::runtime_error cannotListen(const ListenAddress& address, const std::string& reason) {
    return std::runtime_error("cannot listen on " + toText(address) + ": " + reason);
}

std::string reasonOf(int error) {
    if (error == EADDRINUSE) return "another program listens there";
    return std::generic_category().message(error);
}

struct FreeAddresses {
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses resolve(const ListenAddress& address) {
    addrinfo hints{};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const std::string port = std::to_string(address.port);
    const int error = ::getaddrinfo(address.host.c_str(), port.c_str(), &hints, &list);
    if (error != 0) throw cannotListen(address, ::gai_strerror(error));
    return Addresses(list);
}

void setOption(int socket, int level, int option, int value) {
    ::setsockopt(socket, level, option, &value, sizeof value);
}

// A listening socket; none, and the reason in `error`, where that fails.
SocketHandle listenOn(const addrinfo& address, std::size_t receiveBuffer, int& error) {
    SocketHandle socket(::socket(address.ai_family, SOCK_STREAM | kSocketFlags, 0));
    if (socket) {
        constexpr std::size_t kMost = std::numeric_limits<int>::max();
        const int buffer = static_cast<int>(std::min(receiveBuffer, kMost));
        setOption(socket.get(), SOL_SOCKET, SO_REUSEADDR, 1);
        setOption(socket.get(), SOL_SOCKET, SO_RCVBUF, buffer);  // connections inherit it
        if (::bind(socket.get(), address.ai_addr, address.ai_addrlen) == 0 &&
            ::listen(socket.get(), TcpDoor::kBacklog) == 0) {
            return socket;
        }
    }
    error = errno;
    return {};
}

std::uint16_t portOf(int socket) {
    sockaddr_storage bound{};
    socklen_t size = sizeof bound;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&bound), &size);
    const bool six = bound.ss_family == AF_INET6;
    return ntohs(six ? reinterpret_cast<const sockaddr_in6&>(bound).sin6_port
                     : reinterpret_cast<const sockaddr_in&>(bound).sin_port);
}

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

class TcpClient final : public Client {
  public:
    explicit TcpClient(SocketHandle socket) : socket_(std::move(socket)) {
        setOption(socket_.get(), IPPROTO_TCP, TCP_NODELAY, 1);
    }

    int descriptor() const override { return socket_.get(); }
    bool losesBytesAtHangUp() const override { return true; }

    Received read(std::span<Byte> room) override {
        const ssize_t count = ::recv(socket_.get(), room.data(), room.size(), 0);
        if (count > 0) return {Received::Outcome::kBytes, static_cast<std::size_t>(count)};
        if (count == 0) return {Received::Outcome::kEnd, 0};
        return {isForLater(errno) ? Received::Outcome::kNothing : Received::Outcome::kGone, 0};
    }

    bool write(std::string& text) override {
        const ssize_t count = ::send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (count < 0) return isForLater(errno);
        text.erase(0, static_cast<std::size_t>(count));
        return true;
    }

    // Bytes that nobody read would turn the end of the stream into a reset.
    void close() override {
        ::shutdown(socket_.get(), SHUT_WR);
        std::array<Byte, 4096> unread{};
        std::size_t discarded = 0;
        for (Received got = read(unread); got.count > 0; got = read(unread)) {
            discarded += got.count;
            if (discarded >= kMostDiscarded) break;
        }
        socket_.close();
    }

    void reset() override {
        const linger atOnce{1, 0};
        ::setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        socket_.close();
    }

  private:
    SocketHandle socket_;
};

}  // namespace

TcpDoor::TcpDoor(const ListenAddress& address, std::size_t receiveBuffer) : address_(address) {
    const Addresses list = resolve(address);
    int error = 0;
    for (const addrinfo* each = list.get(); each != nullptr && !listening_; each = each->ai_next) {
        listening_ = listenOn(*each, receiveBuffer, error);
    }
    if (!listening_) throw cannotListen(address, reasonOf(error));
    address_.port = portOf(listening_.get());
}

std::unique_ptr<Client> TcpDoor::accept() {
    SocketHandle socket(::accept4(listening_.get(), nullptr, nullptr, kSocketFlags));
    if (!socket) return nullptr;
    return std::make_unique<TcpClient>(std::move(socket));
}

}  // namespace tavio::virtual_printer
