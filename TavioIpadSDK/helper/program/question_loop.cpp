#include "TavioIpadSDK/helper/program/question_loop.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <span>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/keeper_protocol.h"
#include "TavioIpadSDK/helper/program/address_space.h"
#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/exit_status.h"
#include "TavioIpadSDK/helper/program/memory_guard.h"
#include "TavioIpadSDK/helper/program/order.h"

namespace tavio::helper_program {

using helper::Message;
using machine::Descriptor;

namespace {

// From now on, SIGCHLD is read from this descriptor.
Descriptor signalOfChildren() {
    sigset_t childEnded{};
    ::sigemptyset(&childEnded);
    ::sigaddset(&childEnded, SIGCHLD);
    ::sigprocmask(SIG_BLOCK, &childEnded, nullptr);
    return Descriptor(::signalfd(-1, &childEnded, SFD_CLOEXEC | SFD_NONBLOCK));
}

void readAll(const Descriptor& signals) {
    signalfd_siginfo info{};
    while (::read(signals.get(), &info, sizeof(info)) > 0) {
    }
}

bool isReadable(const Descriptor& file) {
    pollfd state{.fd = file.get(), .events = POLLIN, .revents = 0};
    return ::poll(&state, 1, 0) > 0;
}

char kindOf(const Message& message) {
    return message.bytes.empty() ? '\0' : static_cast<char>(message.bytes.front());
}

// Each word of the message after its kind. They point into it.
std::vector<std::string_view> wordsOf(const Message& message) {
    std::string_view text(reinterpret_cast<const char*>(message.bytes.data()),
                          message.bytes.size());
    text.remove_prefix(1);
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\0'), text.size());
        words.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

void endWithoutAnswer() {
    ::_exit(helper::kOutOfMemoryStatus);
}

std::int64_t usedNanoseconds() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return used.tv_sec * 1'000'000'000 + used.tv_nsec;
}

}  // namespace

QuestionLoop::QuestionLoop(Service service)
    : service_(std::move(service)), childEnds_(signalOfChildren()) {}

void QuestionLoop::run() {
    if (!childEnds_.isOpen()) return;
    while (hasOwner() && (service_.socket.isOpen() || !children_.isEmpty())) {
        const bool isIdle = !wait();
        readAll(childEnds_);
        children_.reapEnded();
        children_.killLetGo();
        if (!service_.socket.isOpen()) continue;
        if (isIdle || isUsedUp()) retire();
        takeMessages();
    }
    children_.killAll();
}

// Waits for something to happen; false if that was for too long.
bool QuestionLoop::wait() {
    std::vector<pollfd> waiting = {{childEnds_.get(), POLLIN, 0}};
    if (service_.socket.isOpen()) waiting.push_back({service_.socket.get(), POLLIN, 0});
    if (service_.owner.isOpen()) waiting.push_back({service_.owner.get(), POLLIN, 0});
    children_.addTo(waiting);
    const bool mayBeIdle = service_.idleLimit && service_.socket.isOpen() && children_.isEmpty();
    const int timeout =
        mayBeIdle ? static_cast<int>(std::chrono::milliseconds(*service_.idleLimit).count()) : -1;
    return ::poll(waiting.data(), waiting.size(), timeout) != 0;
}

bool QuestionLoop::hasOwner() const {
    return !service_.owner.isOpen() || !isReadable(service_.owner);
}

bool QuestionLoop::isUsedUp() const {
    rlimit limit{};
    if (::getrlimit(RLIMIT_CPU, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return false;
    return usedNanoseconds() / 500'000'000 >= static_cast<std::int64_t>(limit.rlim_cur);
}

// Nobody can send a message from now on. Those that were sent before can still be received.
void QuestionLoop::retire() {
    ::shutdown(service_.socket.get(), SHUT_RD);
}

void QuestionLoop::takeMessages() {
    while (true) {
        Message message = helper::receiveMessage(service_.socket, helper::kMaxMessageBytes);
        if (message.isEnd) service_.socket.reset();
        if (message.bytes.empty()) return;
        serve(std::move(message));
    }
}

// A message that is not served closes its descriptors.
void QuestionLoop::serve(Message message) {
    const char kind = kindOf(message);
    if (!isUnderstood(message, kind)) return;
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child == 0) performInChild(std::move(message), parent);
    if (child < 0) return;
    ::setpgid(child, child);  // here and in the child: whichever comes first
    children_.add(child, std::move(message.descriptors.front()));
}

bool QuestionLoop::isUnderstood(const Message& message, char kind) const {
    if (!message.isWhole) return false;
    const bool isQuestion = kind == helper::kQuestionMessage;
    const bool isInput = kind == helper::kInputMessage && service_.inputComesWithQuestion &&
                         service_.program->open != nullptr;
    if (!isQuestion && !isInput) return false;
    return message.descriptors.size() == (service_.inputComesWithQuestion ? 3U : 2U);
}

void QuestionLoop::performInChild(Message message, pid_t parent) {
    ::setpgid(0, 0);
    leaveParent();
    message.descriptors.front().reset();  // the leash is the parent's
    kindOf(message) == helper::kQuestionMessage ? answer(message, parent)
                                                : openInput(message, parent);
}

// Nothing of what the parent waits for stays open in the child.
void QuestionLoop::leaveParent() {
    children_.forget();
    service_.socket.reset();
    service_.owner.reset();
    childEnds_.reset();
    sigset_t none{};
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

void QuestionLoop::answer(Message& message, pid_t parent) {
    const std::optional<Order> order = orderOf(service_.taskOf, wordsOf(message));
    if (!order) ::_exit(kBadUsage);
    answerOn(message.descriptors[1].release());
    answerWhenOutOfMemory(service_.program->outOfMemory);
    if (isBelowFresh(order->limits)) endOutOfMemory();
    if (!applyLimits(onTopOfOwn(order->limits)) || ::getppid() != parent) ::_exit(kFailed);
    const int input = service_.inputComesWithQuestion ? message.descriptors[2].release() : -1;
    ::_exit(order->task(input) ? kAnswered : kFailed);
}

void QuestionLoop::openInput(Message& message, pid_t parent) {
    const std::optional<Limits> limits = limitsOf(wordsOf(message));
    if (!limits) ::_exit(kBadUsage);
    setOutOfMemoryAction(endWithoutAnswer);
    if (isBelowFresh(*limits)) endWithoutAnswer();
    if (!applyLimits(onTopOfOwn(*limits)) || ::getppid() != parent) ::_exit(kFailed);
    Service opened;
    opened.program = service_.program;
    opened.taskOf = service_.program->open(message.descriptors[2].release());
    opened.socket = std::move(message.descriptors[1]);
    opened.inputComesWithQuestion = false;
    opened.freshSpace = service_.freshSpace;
    QuestionLoop(std::move(opened)).run();
    ::_exit(kAnswered);
}

// A program that was just started could do nothing at all; this one might still have some memory.
bool QuestionLoop::isBelowFresh(const Limits& limits) const {
    return limits.memoryBytes <= service_.freshSpace;
}

// The limit is for what a program takes that was just started, and what it takes from then on; this one
// has taken more before it began.
Limits QuestionLoop::onTopOfOwn(Limits limits) const {
    const rlim_t taken = addressSpace();
    const rlim_t extra = taken > service_.freshSpace ? taken - service_.freshSpace : 0;
    limits.memoryBytes += std::min(extra, RLIM_INFINITY - limits.memoryBytes);
    return limits;
}

}  // namespace tavio::helper_program
