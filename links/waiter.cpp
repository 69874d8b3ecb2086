#include <algorithm>
#include <array>
#include <cerrno>

#include "tavio/links/stream_link.h"

namespace tavio::links {

namespace {

// Rounded up: a wait that ends just before its time would be repeated at once.
int millisecondsUntil(SystemCalls::Time until, SystemCalls::Time now) {
    constexpr std::chrono::milliseconds kMost = std::chrono::hours{24};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now);
    return static_cast<int>(std::clamp(left, std::chrono::milliseconds{0}, kMost).count());
}

}  // namespace

Waiter::Waiter(SystemCalls& calls, const std::atomic<bool>& cancelled, int wakeUp,
               SystemCalls::Time deadline)
    : calls_(calls), cancelled_(cancelled), wakeUp_(wakeUp), deadline_(deadline) {}

Waiter::Result Waiter::wait(int descriptor, short events, short& ready,
                            std::optional<std::chrono::milliseconds> limit) {
    ready = 0;
    SystemCalls::Time now = calls_.now();
    const SystemCalls::Time until = limit ? std::min(deadline_, now + *limit) : deadline_;
    for (;;) {
        if (cancelled_.load()) return Result::kCancelled;
        std::array<pollfd, 2> watched{{{descriptor, events, 0}, {wakeUp_, POLLIN, 0}}};
        const int count =
            calls_.poll(watched.data(), watched.size(), millisecondsUntil(until, now));
        const int error = errno;
        if (cancelled_.load()) return Result::kCancelled;
        if (count < 0 && error != EINTR && error != EAGAIN) {
            errno = error;
            return Result::kFailed;
        }
        if (count > 0 && watched.front().revents != 0) {
            ready = watched.front().revents;
            return Result::kReady;
        }
        now = calls_.now();
        if (now >= until) return Result::kTimeOut;
    }
}

}  // namespace tavio::links
