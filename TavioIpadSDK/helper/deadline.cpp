#include "TavioIpadSDK/helper/deadline.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace tavio::helper {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A timeout for poll: at least 1 before the deadline, so that waiting is never a busy loop.
int millisecondsUntil(Deadline deadline) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
}

}  // namespace

bool readableBefore(int descriptor, Deadline deadline) {
    while (steady_clock::now() < deadline) {
        pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int ready = ::poll(&waiting, 1, millisecondsUntil(deadline));
        if (ready > 0 || (ready < 0 && errno != EINTR)) return true;
    }
    return false;
}

}  // namespace tavio::helper
