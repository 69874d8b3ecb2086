#include "TavioIpadSDK/helper/program/children.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <span>
#include <sys/resource.h>
#include <sys/wait.h>
#include <utility>

#include "TavioIpadSDK/helper/descriptor_message.h"
#include "TavioIpadSDK/helper/ending_of.h"
#include "TavioIpadSDK/helper/keeper_protocol.h"

namespace tavio::helper_program {

using machine::Descriptor;

namespace {

void killGroup(pid_t process) {
    ::kill(-process, SIGKILL);
}

// A child that has ended and is not reaped yet; 0 if there is none.
pid_t endedChild() {
    siginfo_t info{};
    while (::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0) {
        if (errno != EINTR) return 0;
    }
    return info.si_pid;
}

helper::EndingMessage reap(pid_t process) {
    int status = 0;
    rusage usage{};
    while (::wait4(process, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    return {status, 0, helper::processorTime(usage).count()};
}

// Nothing but the other end's closing can be waited for: the owner sends nothing.
bool isLetGo(const Descriptor& leash) {
    pollfd state{.fd = leash.get(), .events = POLLIN, .revents = 0};
    return leash.isOpen() && ::poll(&state, 1, 0) > 0;
}

}  // namespace

void Children::add(pid_t process, Descriptor leash) {
    children_.push_back({process, std::move(leash)});
}

void Children::addTo(std::vector<pollfd>& waiting) const {
    for (const Child& child : children_) {
        if (child.leash.isOpen()) waiting.push_back({child.leash.get(), POLLIN, 0});
    }
}

void Children::killLetGo() {
    for (Child& child : children_) {
        if (!isLetGo(child.leash)) continue;
        killGroup(child.process);
        child.leash.reset();
    }
}

void Children::reapEnded() {
    while (const pid_t process = endedChild()) {
        killGroup(process);  // its number cannot be another's yet
        const helper::EndingMessage ending = reap(process);
        const auto child = std::ranges::find(children_, process, &Child::process);
        if (child == children_.end()) continue;
        if (child->leash.isOpen()) {
            helper::sendMessage(child->leash, std::as_bytes(std::span(&ending, 1)));
        }
        children_.erase(child);
    }
}

void Children::killAll() {
    for (const Child& child : children_) killGroup(child.process);
    for (const Child& child : children_) reap(child.process);
    children_.clear();
}

}  // namespace tavio::helper_program
