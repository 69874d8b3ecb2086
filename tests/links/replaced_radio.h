// A Bluetooth printer for tests without Bluetooth: the socket is one end of a pair, the test holds
// the other.
#pragma once

#include <cstdlib>
#include <cstring>
#include <deque>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "links/replaced_calls.h"
#include "tavio/links/rfcomm_socket.h"

namespace tavio::links::test {

class ReplacedRadio : public ReplacedCalls {
  public:
    // The result of connect() (0: connected), and the later value of SO_ERROR.
    int connectError = 0;
    int lateError = 0;

    // The first results of connect(), instead of connectError.
    std::deque<int> firstErrors;

    // The socket does not become writable, as while it is connecting.
    bool isStuck = false;

    // True if SIOCOUTQ reports the free space in the queue instead of the bytes that wait in it.
    bool tellsFreeSpace = false;

    int domain = 0;
    int type = 0;
    int protocol = 0;
    std::string address;                       // the bytes that connect() was given
    std::vector<std::pair<int, int>> options;  // level and name of those that were set
    int sendBuffer = 0;

    ReplacedRadio() = default;
    ~ReplacedRadio() override { hangUp(); }

    // The printer's side.
    std::string take(std::size_t maxBytes) const {
        std::string bytes(maxBytes, '\0');
        const ssize_t count = ::recv(printer_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }
    void say(const std::string& text) const {
        EXPECT_EQ(::send(printer_, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }
    void hangUp() {
        if (printer_ >= 0) ::close(printer_);
        printer_ = -1;
    }

    int connect(int descriptor, const sockaddr* to, socklen_t size) override {
        address.assign(reinterpret_cast<const char*>(to), size);
        if (isStuck) fill(descriptor);
        int error = connectError;
        if (!firstErrors.empty()) {
            error = firstErrors.front();
            firstErrors.pop_front();
        }
        errno = error;
        return error == 0 ? 0 : -1;
    }
    int setsockopt(int descriptor, int level, int name, const void* value,
                   socklen_t size) override {
        options.emplace_back(level, name);
        if (name == SO_SNDBUF && size == sizeof sendBuffer) {
            std::memcpy(&sendBuffer, value, sizeof sendBuffer);
        }
        return ReplacedCalls::setsockopt(descriptor, level, name, value, size);
    }
    int getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) override {
        if (const int result = ReplacedCalls::getsockopt(descriptor, level, name, value, size);
            result != 0 || name != SO_ERROR || lateError == 0) {
            return result;
        }
        std::memcpy(value, &lateError, sizeof lateError);
        return 0;
    }
    int unsentBytes(int descriptor, int* count) override {
        if (const int result = ReplacedCalls::unsentBytes(descriptor, count);
            result != 0 || !tellsFreeSpace) {
            return result;
        }
        int size = 0;
        socklen_t bytes = sizeof size;
        EXPECT_EQ(::getsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &size, &bytes), 0);
        *count = size > *count ? size - *count : 0;
        return 0;
    }

  protected:
    int makeSocket(int family, int kind, int number) override {
        domain = family;
        type = kind;
        protocol = number;
        hangUp();
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()) !=
            0) {
            return -1;
        }
        printer_ = ends[1];
        return ends[0];
    }

  private:
    static void fill(int descriptor) {
        const std::string bytes(4096, 'x');
        while (::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0) {
        }
    }

    int printer_ = -1;
};

}  // namespace tavio::links::test
