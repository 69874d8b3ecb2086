#include "tools/tavio-printer/web/raw_http.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace tavio::test {

RawConnection::RawConnection(std::uint16_t port)
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

bool RawConnection::send(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (count <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawConnection::finishSending() {
    ::shutdown(socket_.get(), SHUT_WR);
}

const std::string& RawConnection::readUntil(std::string_view text) {
    while (received_.find(text) == std::string::npos && readSome()) {
    }
    return received_;
}

const std::string& RawConnection::readToEnd() {
    while (readSome()) {
    }
    return received_;
}

bool RawConnection::readSome() {
    constexpr int kTimeout = 60'000;
    pollfd polled{socket_.get(), POLLIN, 0};
    if (closed_ || ::poll(&polled, 1, kTimeout) != 1) return false;
    std::array<char, 65536> buffer{};
    const ssize_t count = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
    closed_ = count <= 0;
    if (!closed_) received_.append(buffer.data(), static_cast<std::size_t>(count));
    return !closed_;
}

std::uint16_t portOf(const std::string& url) {
    return static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1)));
}

std::string getRequest(std::string_view path, std::string_view moreHeaders) {
    return std::string("GET ")
        .append(path)
        .append(" HTTP/1.1\r\nHost: localhost\r\n")
        .append(moreHeaders)
        .append("\r\n");
}

std::size_t countOf(std::string_view text, std::string_view in) {
    std::size_t count = 0;
    for (std::size_t at = in.find(text); at != in.npos; at = in.find(text, at + 1)) ++count;
    return count;
}

}  // namespace tavio::test
