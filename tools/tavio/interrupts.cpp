#include "tools/tavio/interrupts.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <sched.h>
#include <utility>

namespace tavio::tool {

namespace {

constexpr std::array<int, 2> kSignals{SIGINT, SIGTERM};

// Global, because a signal handler needs it. The handler may run on any thread, even while another
// thread removes the link: hence the count.
std::atomic<links::Link*> linkToCancel{nullptr};
std::atomic<int> handlersRunning{0};
std::atomic<int> caughtSignal{0};
static_assert(std::atomic<links::Link*>::is_always_lock_free &&
              std::atomic<int>::is_always_lock_free);

void cancelLink(int number) {
    const int keptErrno = errno;
    ++handlersRunning;
    for (int each : kSignals) std::signal(each, SIG_DFL);  // a second signal is not caught
    caughtSignal = number;
    if (links::Link* link = linkToCancel) link->cancel();
    --handlersRunning;
    errno = keptErrno;
}

// Only if the present handler is `from`: a signal that was ignored stays ignored, and a default
// handler that was restored stays.
void replaceHandler(int number, void (*from)(int), void (*by)(int)) {
    struct sigaction now {};
    if (::sigaction(number, nullptr, &now) != 0 || now.sa_handler != from) return;
    struct sigaction next {};
    next.sa_handler = by;
    next.sa_flags = SA_RESTART;
    ::sigaction(number, &next, nullptr);
}

}  // namespace

CancelOnSignal::CancelOnSignal(std::shared_ptr<links::Link> link) : link_(std::move(link)) {
    linkToCancel = link_.get();
    for (int number : kSignals) replaceHandler(number, SIG_DFL, cancelLink);
}

CancelOnSignal::~CancelOnSignal() {
    for (int number : kSignals) replaceHandler(number, cancelLink, SIG_DFL);
    linkToCancel = nullptr;
    while (handlersRunning != 0) ::sched_yield();
}

int CancelOnSignal::caught() noexcept {
    return caughtSignal;
}

}  // namespace tavio::tool
