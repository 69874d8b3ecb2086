#include "tools/tavio-printer/doors/tcp_door.h"

#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "tools/tavio-printer/doors/listening_socket.h"

namespace tavio::virtual_printer {
namespace {

constexpr int kSocketFlags = SOCK_NONBLOCK | SOCK_CLOEXEC;

// The limit on bytes that are read and dropped when a connection is closed while its client sends.
constexpr std::size_t kMaxDiscarded = std::size_t{1} << 20U;

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

class TcpClient final : public Client {
  public:
    explicit TcpClient(machine::Descriptor socket) : socket_(std::move(socket)) {
        const int yes = 1;
        ::setsockopt(socket_.get(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
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

    // With unread bytes, close() would send a reset instead of the end of the stream.
    void close() override {
        std::array<Byte, 4096> unread{};
        std::size_t discarded = 0;
        for (Received got = read(unread); got.count > 0; got = read(unread)) {
            discarded += got.count;
            if (discarded >= kMaxDiscarded) break;
        }
        socket_.reset();
    }

    void reset() override {
        const linger atOnce{1, 0};
        ::setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        socket_.reset();
    }

  private:
    machine::Descriptor socket_;
};

}  // namespace

TcpDoor::TcpDoor(const ListenAddress& address, std::size_t receiveBuffer)
    : address_(address), listening_(listenOn(address_, kBacklog, receiveBuffer)) {}

std::unique_ptr<Client> TcpDoor::accept() {
    machine::Descriptor socket(::accept4(listening_.get(), nullptr, nullptr, kSocketFlags));
    if (!socket.isOpen()) return nullptr;
    return std::make_unique<TcpClient>(std::move(socket));
}

}  // namespace tavio::virtual_printer
