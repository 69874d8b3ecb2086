#include "tavio/links/serial_connection.h"

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include "tavio/links/serial_speed.h"
#include "tavio/links/stream_sentences.h"

namespace tavio::links {

namespace {

// Passes every byte unchanged in both directions; a read returns at least one.
termios rawSettings(termios settings, std::optional<speed_t> speed) {
    ::cfmakeraw(&settings);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXOFF);  // would insert bytes into the stream
    settings.c_cflag |= static_cast<tcflag_t>(CLOCAL | CREAD);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    if (speed) ::cfsetspeed(&settings, *speed);
    return settings;
}

// tcsetattr() succeeds if any of the settings was taken, so all are checked.
bool wasTaken(const termios& wanted, const termios& taken) {
    constexpr tcflag_t kCharacters = CSIZE | PARENB;
    return taken.c_iflag == wanted.c_iflag && taken.c_oflag == wanted.c_oflag &&
           taken.c_lflag == wanted.c_lflag &&
           (taken.c_cflag & kCharacters) == (wanted.c_cflag & kCharacters);
}

bool isSentAlike(const termios& one, const termios& other) {
    constexpr tcflag_t kShape = CSIZE | CSTOPB | PARENB | PARODD;
    return (one.c_cflag & kShape) == (other.c_cflag & kShape) &&
           ::cfgetospeed(&one) == ::cfgetospeed(&other);
}

// The largest buffer of common serial chips.
constexpr int kChipBytes = 256;

std::chrono::milliseconds timeToSend(int bytes, speed_t speed) {
    constexpr int kBitsPerByte = 11;  // start, 8 bits, and two more to stop
    constexpr std::uint32_t kSlowest = 1'200;
    const auto baud = static_cast<int>(baudOf(speed).value_or(kSlowest));
    return std::chrono::milliseconds(bytes * kBitsPerByte * 1'000 / baud + 1);
}

}  // namespace

SerialConnection::SerialConnection(std::string device, SystemCalls& calls)
    : device_(std::move(device)), address_(parseSerialAddress(device_)), calls_(calls) {}

std::string SerialConnection::peer() const {
    if (!address_) return "the serial printer";
    return "the printer on " + address_->device;
}

std::string SerialConnection::cannotBeOpened(int error) const {
    return std::string(address_->device)
        .append(" cannot be opened: ")
        .append(std::generic_category().message(error));
}

int SerialConnection::open(const std::string& /*address*/, Waiter& waiter, Failure& failure) {
    before_.reset();
    if (!address_) {
        failure = {FailureKind::kBadAddress,
                   device_.empty() ? std::string("no serial device has been named")
                                   : std::string("\"").append(device_).append(
                                         "\" is no serial device such as /dev/ttyUSB0?baud=9600")};
        return -1;
    }
    failure.kind = FailureKind::kNotReached;
    const int descriptor = openDevice(waiter, failure);
    if (descriptor < 0 || prepare(descriptor, failure.sentence)) return descriptor;
    restore(descriptor);
    calls_.close(descriptor);
    return -1;
}

int SerialConnection::openDevice(Waiter& waiter, Failure& failure) {
    // The pause avoids a busy loop if the call is interrupted again and again.
    constexpr std::chrono::milliseconds kPause{1};
    int descriptor = calls_.open(address_->device.c_str());
    while (descriptor < 0 && errno == EINTR) {
        short ready = 0;
        const auto result = waiter.wait(-1, 0, ready, kPause);
        if (result == Waiter::Result::kCancelled) {
            failure = cancelledFailure();
            return -1;
        }
        if (result == Waiter::Result::kFailed || calls_.now() >= waiter.deadline()) {
            errno = EINTR;
            break;
        }
        descriptor = calls_.open(address_->device.c_str());
    }
    if (descriptor < 0) failure.sentence = cannotBeOpened(errno);
    return descriptor;
}

bool SerialConnection::prepare(int descriptor, std::string& failure) {
    termios settings{};
    if (calls_.tcgetattr(descriptor, &settings) != 0) {
        const int error = errno;
        failure =
            error == ENOTTY ? address_->device + " is no serial device" : cannotBeOpened(error);
        return false;
    }
    before_ = settings;
    const auto speed = address_->baud ? speedOf(*address_->baud) : std::nullopt;
    const termios wanted = rawSettings(settings, speed);
    if (calls_.tcsetattr(descriptor, TCSANOW, &wanted) != 0 ||
        calls_.tcgetattr(descriptor, &settings) != 0) {
        failure = address_->device;
        failure.append(" cannot be set up: ").append(std::generic_category().message(errno));
        return false;
    }
    if (!wasTaken(wanted, settings)) {
        failure = address_->device + " does not pass every byte on as it is";
        return false;
    }
    if (speed && ::cfgetospeed(&settings) != *speed) {
        failure = address_->device;
        failure.append(" has no speed of ").append(std::to_string(*address_->baud));
        failure.append(" bits per second");
        return false;
    }
    // Earlier input is no answer to this job. If it cannot be dropped, only the reply is wrong.
    calls_.tcflush(descriptor, TCIFLUSH);
    return true;
}

ssize_t SerialConnection::send(int descriptor, std::span<const Byte> bytes) {
    return calls_.write(descriptor, bytes.data(), bytes.size());
}

ssize_t SerialConnection::receive(int descriptor, std::span<Byte> bytes) {
    return calls_.read(descriptor, bytes.data(), bytes.size());
}

std::optional<std::uint64_t> SerialConnection::unsent(int descriptor) {
    int count = 0;
    if (calls_.unsentBytes(descriptor, &count) != 0 || count < 0) return std::nullopt;
    return static_cast<std::uint64_t>(count);
}

void SerialConnection::restore(int descriptor) {
    if (before_) calls_.tcsetattr(descriptor, TCSANOW, &*before_);
    before_.reset();
}

// When the queue is empty, the last bytes may still be in the chip, and a change of speed or format
// would garble them. TCSADRAIN would wait for them too, but forever if the printer has stopped the
// flow.
void SerialConnection::waitForChip(int descriptor) {
    termios now{};
    if (!before_ || calls_.tcgetattr(descriptor, &now) != 0) return;
    if (isSentAlike(now, *before_)) return;
    const auto end = calls_.now() + timeToSend(kChipBytes, ::cfgetospeed(&now));
    for (auto left = end - calls_.now(); left > left.zero(); left = end - calls_.now()) {
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(left);
        if (calls_.poll(nullptr, 0, static_cast<int>(wait.count())) == 0 || errno != EINTR) return;
    }
}

void SerialConnection::close(int descriptor, bool abort) {
    if (abort) {
        calls_.tcflush(descriptor, TCIOFLUSH);
    } else {
        waitForChip(descriptor);
    }
    restore(descriptor);
    calls_.close(descriptor);
}

}  // namespace tavio::links
