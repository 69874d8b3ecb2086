#include "TavioIpadSDK/helper/start_keeper.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <span>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/descriptor_message.h"
#include "TavioIpadSDK/helper/keeper_protocol.h"
#include "TavioIpadSDK/helper/pipe.h"
#include "TavioIpadSDK/helper/spawn.h"

namespace tavio::helper {

namespace {

// The keeper cannot ask for it by number: that may be another process's by then.
bool sendOwner(const Descriptor& socket) {
    const Descriptor owner(static_cast<int>(::syscall(SYS_pidfd_open, ::getpid(), 0)));
    const char kind = kOwnerMessage;
    return owner.isOpen() && sendMessage(socket, std::as_bytes(std::span(&kind, 1)), {&owner});
}

// The program leaves its work to a child of its own and ends at once.
void reap(pid_t process) {
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace

std::shared_ptr<Server> startKeeper(const std::string& program) {
    SocketPair sockets = makeSocketPair();
    const Descriptor nowhere =
        aboveStandardStreams(Descriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC)));
    if (!sockets.isOpen() || !nowhere.isOpen() || !sendOwner(sockets.ours)) return nullptr;
    const std::optional<pid_t> process = spawn(program, {kKeepWord}, sockets.theirs, nowhere);
    if (!process) return nullptr;
    reap(*process);
    return std::make_shared<Server>(std::move(sockets.ours));
}

}  // namespace tavio::helper
