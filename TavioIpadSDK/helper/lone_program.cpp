#include "TavioIpadSDK/helper/lone_program.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>
#include <utility>

#include "TavioIpadSDK/helper/ending_of.h"
#include "TavioIpadSDK/helper/pipe.h"
#include "TavioIpadSDK/helper/spawn.h"

namespace tavio::helper {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A process that this one started.
class LoneProgram : public Leash {
  public:
    explicit LoneProgram(pid_t process) : process_(process) {}
    LoneProgram(const LoneProgram&) = delete;
    LoneProgram& operator=(const LoneProgram&) = delete;
    ~LoneProgram() override {
        if (process_ != 0) stopAndReap();
    }

    std::optional<Ending> waitForEnd(Deadline deadline) override {
        if (process_ == 0) return Ending{};
        if (!endedBefore(deadline)) return std::nullopt;
        return stopAndReap();
    }

  private:
    bool endedBefore(Deadline deadline) const;
    Ending stopAndReap();

    pid_t process_;  // 0 after it was reaped
};

// Polls with growing pauses: a process that has closed its answer mostly ends at once. The process
// is not reaped here, so its number is not used again.
bool LoneProgram::endedBefore(Deadline deadline) const {
    auto pause = std::chrono::microseconds(100);
    while (true) {
        siginfo_t info{};
        const int error =
            ::waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT);
        if ((error != 0 && errno != EINTR) || info.si_pid == process_) return true;
        if (steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(pause);
        pause = std::min<std::chrono::microseconds>(pause * 2, milliseconds(10));
    }
}

// The ending is not known if the application reaped the process.
Ending LoneProgram::stopAndReap() {
    ::kill(-process_, SIGKILL);
    int status = 0;
    rusage usage{};
    pid_t reaped = 0;
    do {
        reaped = ::wait4(process_, &status, 0, &usage);
    } while (reaped < 0 && errno == EINTR);
    const bool isReaped = reaped == std::exchange(process_, 0);
    return isReaped ? endingOf(status, processorTime(usage)) : Ending{};
}

}  // namespace

std::optional<Running> startLoneProgram(const std::string& program,
                                        const std::vector<std::string>& arguments,
                                        const Descriptor& input) {
    const Descriptor document = aboveStandardStreams(input);
    Pipe pipe = makePipe();
    if (!document.isOpen() || !pipe.isOpen()) return std::nullopt;
    const std::optional<pid_t> process = spawn(program, arguments, document, pipe.writing);
    if (!process) return std::nullopt;
    return Running{std::make_unique<LoneProgram>(*process), std::move(pipe.reading)};
}

}  // namespace tavio::helper
