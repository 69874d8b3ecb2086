#include "tavio/links/system_calls.h"

#include <cstring>
#include <fcntl.h>
#include <linux/sockios.h>
#include <memory>
#include <netdb.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tavio::links {

SystemCalls::Time SystemCalls::now() {
    return std::chrono::steady_clock::now();
}

int SystemCalls::socket(int domain, int type, int protocol) {
    return ::socket(domain, type | SOCK_NONBLOCK | SOCK_CLOEXEC, protocol);
}

int SystemCalls::connect(int descriptor, const sockaddr* address, socklen_t size) {
    return ::connect(descriptor, address, size);
}

int SystemCalls::setsockopt(int descriptor, int level, int name, const void* value,
                            socklen_t size) {
    return ::setsockopt(descriptor, level, name, value, size);
}

int SystemCalls::getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) {
    return ::getsockopt(descriptor, level, name, value, size);
}

ssize_t SystemCalls::send(int descriptor, const void* bytes, std::size_t size) {
    return ::send(descriptor, bytes, size, MSG_NOSIGNAL);
}

ssize_t SystemCalls::recv(int descriptor, void* bytes, std::size_t size) {
    return ::recv(descriptor, bytes, size, 0);
}

int SystemCalls::shutdown(int descriptor, int how) {
    return ::shutdown(descriptor, how);
}

int SystemCalls::unsentBytes(int descriptor, int* count) {
    return ::ioctl(descriptor, SIOCOUTQ, count);
}

int SystemCalls::lookUp(const std::string& host, std::uint16_t port,
                        std::vector<SocketAddress>& addresses) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0) return error;
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> list(found, &::freeaddrinfo);
    for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
        SocketAddress address;
        if (entry->ai_addrlen > sizeof address.storage) continue;
        std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
        address.size = entry->ai_addrlen;
        addresses.push_back(address);
    }
    return 0;
}

int SystemCalls::poll(pollfd* descriptors, nfds_t count, int milliseconds) {
    return ::poll(descriptors, count, milliseconds);
}

int SystemCalls::close(int descriptor) {
    return ::close(descriptor);
}

int SystemCalls::open(const char* path) {
    return ::open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

ssize_t SystemCalls::write(int descriptor, const void* bytes, std::size_t size) {
    return ::write(descriptor, bytes, size);
}

ssize_t SystemCalls::read(int descriptor, void* bytes, std::size_t size) {
    return ::read(descriptor, bytes, size);
}

int SystemCalls::tcgetattr(int descriptor, termios* attributes) {
    return ::tcgetattr(descriptor, attributes);
}

int SystemCalls::tcsetattr(int descriptor, int when, const termios* attributes) {
    return ::tcsetattr(descriptor, when, attributes);
}

int SystemCalls::tcflush(int descriptor, int queue) {
    return ::tcflush(descriptor, queue);
}

// Never destroyed: a lookup may outlive main().
SystemCalls& systemCalls() {
    static SystemCalls& calls = *new SystemCalls;
    return calls;
}

}  // namespace tavio::links
