#include "tavio/links/connecting.h"

#include <cerrno>

namespace tavio::links {

int finishConnecting(int descriptor, Waiter& waiter) {
    short ready = 0;
    switch (waiter.wait(descriptor, POLLOUT, ready)) {
        case Waiter::Result::kReady:
            break;
        case Waiter::Result::kTimeOut:
            return ETIMEDOUT;
        case Waiter::Result::kCancelled:
            return ECANCELED;
        case Waiter::Result::kFailed:
            return errno;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (waiter.calls().getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
        return errno;
    }
    if (error == 0 && (ready & (POLLERR | POLLHUP | POLLNVAL)) != 0) return ECONNABORTED;
    return error;
}

}  // namespace tavio::links
