#include "tools/tavio/interrupts.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <sched.h>
#include <span>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/write_all.h"
#include "tools/tavio/exit_status.h"

namespace tavio::tool {

namespace {

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
    for (int each : kInterrupts) std::signal(each, SIG_DFL);  // a second signal is not caught
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

// Global, because a signal handler needs it.
std::atomic<const LastWords*> wordsToWrite{nullptr};

void write(int descriptor, const std::string& text) {
    machine::writeAll(descriptor, std::as_bytes(std::span(text)));
}

void exitWithWords(int number) {
    ++handlersRunning;  // for good: the words are there until the program ends
    if (const LastWords* words = wordsToWrite) {
        write(STDERR_FILENO, words->err);
        write(STDOUT_FILENO, words->out.at(number == kInterrupts[0] ? 0 : 1));
    }
    ::_exit(interruptedBy(number));
}

}  // namespace

CancelOnSignal::CancelOnSignal(std::shared_ptr<links::Link> link) : link_(std::move(link)) {
    linkToCancel = link_.get();
    for (int number : kInterrupts) replaceHandler(number, SIG_DFL, cancelLink);
}

CancelOnSignal::~CancelOnSignal() {
    for (int number : kInterrupts) replaceHandler(number, cancelLink, SIG_DFL);
    linkToCancel = nullptr;
    while (handlersRunning != 0) ::sched_yield();
}

int CancelOnSignal::caught() noexcept {
    return caughtSignal;
}

ExitOnSignal::ExitOnSignal(LastWords words) : words_(std::move(words)) {
    wordsToWrite = &words_;
    for (int number : kInterrupts) replaceHandler(number, SIG_DFL, exitWithWords);
}

ExitOnSignal::~ExitOnSignal() {
    for (int number : kInterrupts) replaceHandler(number, exitWithWords, SIG_DFL);
    wordsToWrite = nullptr;
    while (handlersRunning != 0) ::sched_yield();
}

}  // namespace tavio::tool
