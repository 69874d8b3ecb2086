#include "tools/tavio-printer/doors/listening_socket.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <system_error>

namespace tavio::virtual_printer {
namespace {

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

void setOption(int socket, int option, int value) {
    ::setsockopt(socket, SOL_SOCKET, option, &value, sizeof value);
}

// A listening socket; on failure none, and the reason in `error`.
machine::Descriptor tryAddress(const addrinfo& address, int backlog,
                               std::optional<std::size_t> receiveBuffer, int& error) {
    machine::Descriptor socket(
        ::socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket.isOpen()) {
        setOption(socket.get(), SO_REUSEADDR, 1);
        if (receiveBuffer) {
            constexpr std::size_t kMost = std::numeric_limits<int>::max();
            const int size = static_cast<int>(std::min(*receiveBuffer, kMost));
            setOption(socket.get(), SO_RCVBUF, size);  // connections inherit it
        }
        if (::bind(socket.get(), address.ai_addr, address.ai_addrlen) == 0 &&
            ::listen(socket.get(), backlog) == 0) {
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

}  // namespace

machine::Descriptor listenOn(ListenAddress& address, int backlog,
                             std::optional<std::size_t> receiveBuffer) {
    const Addresses list = resolve(address);
    machine::Descriptor socket;
    int error = 0;
    for (const addrinfo* each = list.get(); each != nullptr && !socket.isOpen();
         each = each->ai_next) {
        socket = tryAddress(*each, backlog, receiveBuffer, error);
    }
    if (!socket.isOpen()) throw cannotListen(address, reasonOf(error));
    address.port = portOf(socket.get());
    return socket;
}

}  // namespace tavio::virtual_printer
