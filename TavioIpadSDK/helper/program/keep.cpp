#include "TavioIpadSDK/helper/program/keep.h"

#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <span>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/descriptor_message.h"
#include "TavioIpadSDK/helper/keeper_protocol.h"
#include "TavioIpadSDK/helper/program/address_space.h"
#include "TavioIpadSDK/helper/program/exit_status.h"
#include "TavioIpadSDK/helper/program/question_loop.h"

namespace tavio::helper_program {

namespace {

using machine::Descriptor;

constexpr std::chrono::seconds kIdleLimit{60};

// The socket under another number: nothing reads from standard input by mistake.
Descriptor takeSocket() {
    Descriptor socket(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const Descriptor nowhere(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!nowhere.isOpen() || ::dup2(nowhere.get(), STDIN_FILENO) < 0) socket.reset();
    return socket;
}

Descriptor receiveOwner(const Descriptor& socket) {
    helper::Message message = helper::receiveMessage(socket, 1);
    if (message.descriptors.size() != 1) return {};
    return std::move(message.descriptors.front());
}

int serve(const Program& program, Descriptor socket, rlim_t freshSpace) {
    Descriptor owner = receiveOwner(socket);
    if (!owner.isOpen() || ::prctl(PR_SET_DUMPABLE, 0) != 0) return kFailed;
    if (program.warmUp != nullptr) program.warmUp();
    const std::byte ready{1};
    if (!helper::sendMessage(socket, std::span(&ready, 1))) return kFailed;
    Service service;
    service.program = &program;
    service.taskOf = program.taskOf;
    service.socket = std::move(socket);
    service.owner = std::move(owner);
    service.idleLimit = kIdleLimit;
    service.freshSpace = freshSpace;
    QuestionLoop(std::move(service)).run();
    return kAnswered;
}

}  // namespace

// The keeper belongs to nobody, so that nobody has to reap it.
int keep(const Program& program) {
    const rlim_t freshSpace = addressSpace();
    Descriptor socket = takeSocket();
    if (!socket.isOpen()) return kFailed;
    const pid_t keeper = ::fork();
    if (keeper != 0) return keeper > 0 ? kAnswered : kFailed;
    ::setpgid(0, 0);
    return serve(program, std::move(socket), freshSpace);
}

}  // namespace tavio::helper_program
