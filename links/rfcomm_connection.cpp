#include "tavio/links/rfcomm_connection.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <sys/socket.h>
#include <system_error>
#include <utility>

#include "tavio/links/background_task.h"
#include "tavio/links/connecting.h"
#include "tavio/links/rfcomm_socket.h"
#include "tavio/links/stream_sentences.h"

namespace tavio::links {

namespace {

using std::chrono::milliseconds;

// Small, so that the link soon notices a printer that takes no more.
constexpr int kSendBuffer = 16 * 1024;

// An earlier connection that is being ended ends or blocks the new one.
constexpr int kMaxAttempts = 5;
constexpr milliseconds kPause{200};

// Calls that the kernel does not block take microseconds. After the deadline the link must not wait
// much longer.
constexpr milliseconds kMaxCloseTime{100};
constexpr milliseconds kPollInterval{50};

// Stands for an error: the kernel blocks the call.
constexpr int kBlocked = -1;

std::string noSocketSentence(int error) {
    switch (error) {
        case EAFNOSUPPORT:
            return "this machine has no Bluetooth";
        case EPROTONOSUPPORT:
        case ESOCKTNOSUPPORT:
            return "this machine's Bluetooth has no serial ports (RFCOMM)";
        default:
            return "no Bluetooth connection can be made: " + std::generic_category().message(error);
    }
}

// The texts of the kernel's errors for the reasons of the radio and the printer.
std::string reasonText(int error) {
    switch (error) {
        case EHOSTUNREACH:
        case ENETUNREACH:
        case ENETDOWN:
            return "this machine's Bluetooth is switched off or missing";
        case EHOSTDOWN:
        case ETIMEDOUT:
            return "it does not answer; is it switched on and near?";
        case ECONNREFUSED:
            return "it refuses; is it in use, or its serial port on another channel?";
        case EBUSY:
            return "another connection to it is open, or still being ended";
        case kBlocked:
            return "the kernel is still busy with an earlier connection that fell silent";
        case EACCES:
        case EPERM:
        case EBADE:
            return "it is not paired with this machine";
        case ECONNRESET:
        case ECONNABORTED:
        case ENOTCONN:
            return "it broke the connection off at once";
        default:
            return std::generic_category().message(error);
    }
}

Failure notReached(std::string sentence) {
    return {FailureKind::kNotReached, std::move(sentence)};
}

bool isPassing(int error) {
    return error == EBUSY || error == ECONNRESET || error == ECONNABORTED || error == ENOTCONN;
}

// A connect() that may outlast its caller: the last of the two closes the socket.
struct Attempt {
    std::mutex mutex;
    bool hasReturned = false;
    bool isGivenUp = false;
    int error = 0;

    void run(SystemCalls& calls, int descriptor, const RfcommSocketAddress& address) {
        const int result =
            calls.connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        const int why = result == 0 ? 0 : errno;
        const std::lock_guard lock(mutex);
        error = why;
        hasReturned = true;
        if (isGivenUp) calls.close(descriptor);
    }

    // False if it has returned meanwhile.
    bool giveUp() {
        const std::lock_guard lock(mutex);
        isGivenUp = !hasReturned;
        return isGivenUp;
    }
};

}  // namespace

RfcommConnection::RfcommConnection(std::string printer, SystemCalls& calls)
    : printer_(std::move(printer)), address_(parseRfcommAddress(printer_)), calls_(calls) {}

std::string RfcommConnection::peer() const {
    if (!address_) return "the Bluetooth printer";
    return "the printer at " + toText(*address_);
}

int RfcommConnection::open(const std::string& /*address*/, Waiter& waiter, Failure& failure) {
    emptyQueue_.reset();
    if (!address_) {
        failure = {FailureKind::kBadAddress,
                   printer_.empty()
                       ? std::string("no Bluetooth printer has been named")
                       : std::string("\"").append(printer_).append(
                             "\" is no Bluetooth address such as 00:11:22:33:44:55/1")};
        return -1;
    }
    for (int attempt = 1;; ++attempt) {
        const int descriptor = calls_.socket(kBluetoothFamily, SOCK_STREAM, kRfcommProtocol);
        if (descriptor < 0) {
            failure = notReached(noSocketSentence(errno));
            return -1;
        }
        const int error = connect(descriptor, waiter);
        if (error == 0) return descriptor;
        failure = error == ECANCELED ? cancelledFailure() : notReached(reasonFor(error));
        short ready = 0;
        if (!isPassing(error) || attempt == kMaxAttempts ||
            waiter.wait(-1, 0, ready, kPause) != Waiter::Result::kTimeOut ||
            calls_.now() >= waiter.deadline()) {
            return -1;
        }
    }
}

int RfcommConnection::connect(int descriptor, Waiter& waiter) {
    // A failure is harmless: the kernel's default applies.
    calls_.setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    int error = beginConnecting(descriptor, waiter);
    if (error == kBlocked) return error;  // it closes the socket when it returns
    // An interrupted connect continues by itself, like one in progress.
    if (error == EINPROGRESS || error == EINTR) error = finishConnecting(descriptor, waiter);
    if (error != 0) {
        close(descriptor, true);
        return error;
    }
    int count = 0;
    if (calls_.unsentBytes(descriptor, &count) == 0) emptyQueue_ = count;
    return 0;
}

int RfcommConnection::beginConnecting(int descriptor, Waiter& waiter) {
    const auto attempt = std::make_shared<Attempt>();
    BackgroundTask task([attempt, descriptor, &calls = calls_, to = toSocketAddress(*address_)] {
        attempt->run(calls, descriptor, to);
    });
    const auto begin = std::chrono::steady_clock::now();
    const auto limit = waiter.deadline() - calls_.now();
    while (!task.isDoneWithin(kPollInterval)) {
        short ready = 0;
        const auto result = waiter.wait(-1, 0, ready, milliseconds{0});
        const bool isInTime = std::chrono::steady_clock::now() - begin < limit;
        if (result == Waiter::Result::kTimeOut && isInTime) continue;
        if (attempt->giveUp()) return kBlocked;
        break;
    }
    return attempt->error;
}

std::string RfcommConnection::reasonFor(int error) const {
    return peer().append(" cannot be reached: ").append(reasonText(error));
}

ssize_t RfcommConnection::send(int descriptor, std::span<const Byte> bytes) {
    return calls_.send(descriptor, bytes.data(), bytes.size());
}

ssize_t RfcommConnection::receive(int descriptor, std::span<Byte> bytes) {
    return calls_.recv(descriptor, bytes.data(), bytes.size());
}

std::optional<std::uint64_t> RfcommConnection::unsent(int descriptor) {
    int count = 0;
    if (!emptyQueue_ || calls_.unsentBytes(descriptor, &count) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(std::abs(std::int64_t{count} - *emptyQueue_));
}

void RfcommConnection::close(int descriptor, bool /*abort*/) {
    try {
        BackgroundTask task([descriptor, &calls = calls_] { calls.close(descriptor); });
        task.isDoneWithin(kMaxCloseTime);
    } catch (const std::bad_alloc&) {
        calls_.close(descriptor);
    }
}

}  // namespace tavio::links
