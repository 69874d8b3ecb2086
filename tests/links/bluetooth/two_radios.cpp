#include "links/bluetooth/two_radios.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <poll.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tavio/links/rfcomm_socket.h"

namespace tavio::links::test {

namespace {

// The kernel's requests to its Bluetooth controllers.
constexpr int kControllerProtocol = 1;
constexpr unsigned long kSwitchOn = _IOW('H', 201, int);
constexpr unsigned long kTellAbout = _IOR('H', 211, int);
constexpr unsigned long kLetBeSeen = _IOW('H', 221, int);
constexpr std::uint32_t kByConnections = 2;

struct Request {
    std::uint16_t controller = 0;
    std::uint32_t option = 0;
};

// The beginning of the kernel's answer, and room for the rest.
struct Description {
    std::uint16_t controller = 0;
    std::array<char, 8> name{};
    std::array<std::uint8_t, 6> device{};
    std::array<std::uint8_t, 256> rest{};
};

bool succeeded(const char* what, int result) {
    EXPECT_GE(result, 0) << what << ": error " << errno;
    return result >= 0;
}

bool switchOn(int socket, std::uint16_t controller) {
    Request request{controller, kByConnections};
    const int result = ::ioctl(socket, kSwitchOn, static_cast<unsigned long>(controller));
    return (result == 0 || errno == EALREADY || succeeded("switching on", result)) &&
           succeeded("letting be seen", ::ioctl(socket, kLetBeSeen, &request));
}

}  // namespace

std::optional<pid_t> emulator() {
    const char* text = std::getenv("TAVIO_BTVIRT");
    if (text == nullptr) return std::nullopt;
    const std::string_view digits = text;
    pid_t process = 0;
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), process);
    if (error != std::errc() || process <= 1) return std::nullopt;
    return process;
}

std::optional<RfcommAddress> switchRadiosOn() {
    const int socket = ::socket(kBluetoothFamily, SOCK_RAW | SOCK_CLOEXEC, kControllerProtocol);
    if (!succeeded("a socket for the controllers", socket)) return std::nullopt;
    Description description;
    description.controller = 1;
    const bool done = switchOn(socket, 0) && switchOn(socket, 1) &&
                      succeeded("its address", ::ioctl(socket, kTellAbout, &description));
    ::close(socket);
    if (!done) return std::nullopt;
    RfcommAddress address{description.device, 1};
    std::reverse(address.device.begin(), address.device.end());
    return address;
}

RfcommPrinter::RfcommPrinter(const RfcommAddress& address)
    : listener_(::socket(kBluetoothFamily, SOCK_STREAM | SOCK_CLOEXEC, kRfcommProtocol)) {
    const RfcommSocketAddress place = toSocketAddress(address);
    succeeded("bind", ::bind(listener_, reinterpret_cast<const sockaddr*>(&place), sizeof place));
    succeeded("listen", ::listen(listener_, 1));
}

RfcommPrinter::~RfcommPrinter() {
    hangUp();
    ::close(listener_);
}

bool RfcommPrinter::accept() {
    connection_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    return succeeded("accept", connection_);
}

std::string RfcommPrinter::take() {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::recv(connection_, buffer.data(), buffer.size(), 0);
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

std::string RfcommPrinter::take(std::size_t size) {
    std::string bytes;
    while (bytes.size() < size) {
        const std::string more = take();
        if (more.empty()) break;
        bytes += more;
    }
    return bytes;
}

bool RfcommPrinter::say(const std::string& text) {
    return ::send(connection_, text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
}

void RfcommPrinter::hangUp() {
    if (connection_ >= 0) ::close(connection_);
    connection_ = -1;
}

}  // namespace tavio::links::test
