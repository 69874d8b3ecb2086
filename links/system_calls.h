// The system calls that connections use; tests replace them.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/types.h>
#include <termios.h>
#include <vector>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

// An address for connect().
struct TAVIO_API SocketAddress {
    sockaddr_storage storage{};
    socklen_t size = 0;
};

// Each operation behaves like the system call of that name: -1 with errno on failure. These call
// the system.
class TAVIO_API SystemCalls {
  public:
    using Time = std::chrono::steady_clock::time_point;

    SystemCalls() = default;
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;
    virtual ~SystemCalls() = default;

    // The clock of all deadlines.
    virtual Time now();

    // The descriptor is non-blocking and closed on exec.
    virtual int socket(int domain, int type, int protocol);
    virtual int connect(int descriptor, const sockaddr* address, socklen_t size);
    virtual int setsockopt(int descriptor, int level, int name, const void* value, socklen_t size);
    virtual int getsockopt(int descriptor, int level, int name, void* value, socklen_t* size);
    virtual ssize_t send(int descriptor, const void* bytes, std::size_t size);  // no SIGPIPE
    virtual ssize_t recv(int descriptor, void* bytes, std::size_t size);
    virtual int shutdown(int descriptor, int how);

    // Bytes written that have not been acknowledged (TCP) or have not left (others): SIOCOUTQ,
    // which is the same number as TIOCOUTQ.
    virtual int unsentBytes(int descriptor, int* count);

    // The addresses of a host for a stream, in the order in which they are tried. Returns 0 or the
    // error of getaddrinfo() (EAI_SYSTEM with errno). It may take long and is called on a thread
    // that may outlive the link, so a replacement must outlive the call.
    virtual int lookUp(const std::string& host, std::uint16_t port,
                       std::vector<SocketAddress>& addresses);

    // Must also wait for real descriptors, such as the link's own.
    virtual int poll(pollfd* descriptors, nfds_t count, int milliseconds);
    virtual int close(int descriptor);

    // Devices. open() is non-blocking, without becoming the controlling terminal, not inherited.
    virtual int open(const char* path);
    virtual ssize_t write(int descriptor, const void* bytes, std::size_t size);
    virtual ssize_t read(int descriptor, void* bytes, std::size_t size);
    virtual int tcgetattr(int descriptor, termios* attributes);
    virtual int tcsetattr(int descriptor, int when, const termios* attributes);
    virtual int tcflush(int descriptor, int queue);
};

// The system's own, shared by all links.
TAVIO_API SystemCalls& systemCalls();

}  // namespace tavio::links
