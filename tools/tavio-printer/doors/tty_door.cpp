#include "tools/tavio-printer/doors/tty_door.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <system_error>
#include <termios.h>
#include <utility>

namespace tavio::virtual_printer {
namespace {

constexpr const char* kDevices = "/dev/pts/";

std::runtime_error cannotCreate(int error) {
    return std::runtime_error("cannot create a pseudo-terminal: " +
                              std::generic_category().message(error));
}

std::string deviceOf(int terminal) {
    std::array<char, 128> name{};
    if (::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0 ||
        ::ptsname_r(terminal, name.data(), name.size()) != 0) {
        throw cannotCreate(errno);
    }
    return name.data();
}

bool isHungUp(int terminal) {
    pollfd polled{terminal, 0, 0};
    return ::poll(&polled, 1, 0) == 1 && (polled.revents & POLLHUP) != 0;
}

bool isReadable(int terminal) {
    pollfd polled{terminal, POLLIN, 0};
    return ::poll(&polled, 1, 0) == 1 && (polled.revents & POLLIN) != 0;
}

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

Received receive(int terminal, std::span<Byte> room) {
    const ssize_t count = ::read(terminal, room.data(), room.size());
    if (count > 0) return {Received::Outcome::kBytes, static_cast<std::size_t>(count)};
    if (count < 0 && isForLater(errno)) return {Received::Outcome::kNothing, 0};
    return {Received::Outcome::kGone, 0};  // EIO: no program has the device open
}

// The target of a symbolic link; "" if there is no link.
std::string targetOf(const std::string& link) {
    std::error_code none;
    return std::filesystem::read_symlink(link, none).string();
}

}  // namespace

class TtyClient final : public Client {
  public:
    explicit TtyClient(TtyDoor& door) : door_(door) {}
    ~TtyClient() override { close(); }

    int descriptor() const override { return door_.terminal_.get(); }
    bool losesBytesAtHangUp() const override { return false; }

    Received read(std::span<Byte> room) override {
        const Received received = receive(descriptor(), room);
        if (received.outcome == Received::Outcome::kGone) gone();
        return received;
    }

    bool write(std::string& text) override {
        const ssize_t count = ::write(descriptor(), text.data(), text.size());
        if (count < 0 && isForLater(errno)) return true;
        if (count < 0) gone();
        if (count < 0) return false;
        text.erase(0, static_cast<std::size_t>(count));
        return true;
    }

    void close() override {
        if (there_) door_.ignore();
        there_ = false;
    }
    void reset() override { close(); }

  private:
    void gone() {
        if (there_) door_.freshen();
        there_ = false;
    }

    TtyDoor& door_;
    bool there_ = true;
};

TtyDoor::TtyDoor(const std::string& link)
    : link_(link), terminal_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
    if (!terminal_.isOpen()) throw cannotCreate(errno);
    device_ = deviceOf(terminal_.get());
    freshen();
    if (!link_.empty()) makeLink();
}

TtyDoor::~TtyDoor() {
    std::error_code ignored;
    if (!link_.empty() && targetOf(link_) == device_) std::filesystem::remove(link_, ignored);
}

void TtyDoor::makeLink() const {
    std::error_code error;
    if (targetOf(link_).starts_with(kDevices)) std::filesystem::remove(link_, error);
    std::filesystem::create_symlink(device_, link_, error);
    if (!error) return;
    const bool exists = error == std::errc::file_exists;
    throw std::runtime_error(
        "cannot make the link " + link_ + ": " +
        (exists ? std::string("there is something else of that name") : error.message()));
}

// Makes the device raw again and drops its unread bytes, for the next client.
void TtyDoor::freshen() const {
    const machine::Descriptor device(
        ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    if (!device.isOpen()) return;
    termios mode{};
    if (::tcgetattr(device.get(), &mode) == 0) {
        ::cfmakeraw(&mode);
        ::tcsetattr(device.get(), TCSANOW, &mode);
    }
    ::tcflush(device.get(), TCIFLUSH);
}

std::unique_ptr<Client> TtyDoor::accept() {
    const bool open = !isHungUp(terminal_.get());
    if (ignoring_ && !open) {
        std::array<Byte, 4096> unread{};
        while (receive(terminal_.get(), unread).count > 0) {
        }
        freshen();
    }
    if (std::exchange(ignoring_, ignoring_ && open)) return nullptr;
    if (!open && !isReadable(terminal_.get())) return nullptr;
    return std::make_unique<TtyClient>(*this);
}

}  // namespace tavio::virtual_printer
