#include "TavioIpadSDK/helper/helper_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace tavio::helper {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Fonts and their cache are found through these, libraries in unusual places through the last one.
constexpr std::array kKeptVariables = {
    "HOME",
    "XDG_CACHE_HOME",
    "XDG_CONFIG_HOME",
    "XDG_DATA_HOME",
    "FONTCONFIG_FILE",
    "FONTCONFIG_PATH",
    "FONTCONFIG_SYSROOT",
    "LD_LIBRARY_PATH",
};

std::vector<std::string> keptEnvironment() {
    std::vector<std::string> kept;
    for (const char* name : kKeptVariables) {
        if (const char* value = std::getenv(name)) kept.push_back(std::string(name) + "=" + value);
    }
    return kept;
}

// A program's arguments or environment in the form that the system takes. The pointers point into
// `texts`.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// The same file under a number above those of the three standard streams, so that dup2 onto one of
// them overwrites no other.
Descriptor aboveStandardStreams(const Descriptor& file) {
    return Descriptor(::fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    const Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    return {aboveStandardStreams(reading), aboveStandardStreams(writing)};
}

// Sets up the file descriptors of the new process before it runs the program.
class FileActions {
  public:
    FileActions(const Descriptor& input, const Descriptor& output) {
        ok_ = ::posix_spawn_file_actions_init(&actions_) == 0;
        step(::posix_spawn_file_actions_adddup2(&actions_, input.get(), STDIN_FILENO));
        step(::posix_spawn_file_actions_adddup2(&actions_, output.get(), STDOUT_FILENO));
        step(
            ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0));
        step(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    bool ok() const { return ok_; }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    void step(int error) { ok_ = ok_ && error == 0; }

    posix_spawn_file_actions_t actions_{};
    bool ok_ = false;
};

// A process group of its own, so that all of it can be stopped, and default signal handling: a
// signal that the application ignores would otherwise stay ignored, SIGXCPU too.
class Attributes {
  public:
    Attributes() {
        ok_ = ::posix_spawnattr_init(&attributes_) == 0;
        sigset_t none{};
        sigset_t all{};
        ::sigemptyset(&none);
        ::sigfillset(&all);
        step(::posix_spawnattr_setsigmask(&attributes_, &none));
        step(::posix_spawnattr_setsigdefault(&attributes_, &all));
        step(::posix_spawnattr_setpgroup(&attributes_, 0));
        const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP;
        step(::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags)));
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }

    bool ok() const { return ok_; }
    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
    void step(int error) { ok_ = ok_ && error == 0; }

    posix_spawnattr_t attributes_{};
    bool ok_ = false;
};

// A timeout for poll: at least 1 before the deadline, so that waiting is never a busy loop.
int millisecondsUntil(Deadline deadline) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
}

// True if data or the end of the stream can be read before the deadline.
bool readableBefore(int descriptor, Deadline deadline) {
    while (steady_clock::now() < deadline) {
        pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int ready = ::poll(&waiting, 1, millisecondsUntil(deadline));
        if (ready > 0 || (ready < 0 && errno != EINTR)) return true;
    }
    return false;
}

std::chrono::microseconds processorTime(const rusage& usage) {
    const auto seconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
    const auto rest = usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
    return std::chrono::seconds(seconds) + std::chrono::microseconds(rest);
}

}  // namespace

std::optional<HelperProcess> HelperProcess::start(const std::string& program,
                                                  const std::vector<std::string>& arguments,
                                                  const Descriptor& input) {
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = keptEnvironment();

    const Descriptor document = aboveStandardStreams(input);
    Pipe pipe = makePipe();
    if (!document.isOpen() || !pipe.reading.isOpen() || !pipe.writing.isOpen()) return std::nullopt;

    const FileActions actions(document, pipe.writing);
    const Attributes attributes;
    if (!actions.ok() || !attributes.ok()) return std::nullopt;

    pid_t process = 0;
    const int error = ::posix_spawn(&process, program.c_str(), actions.get(), attributes.get(),
                                    pointersTo(words).data(), pointersTo(environment).data());
    if (error != 0) return std::nullopt;
    return HelperProcess(process, std::move(pipe.reading));
}

HelperProcess::HelperProcess(HelperProcess&& other) noexcept
    : process_(std::exchange(other.process_, 0)), answer_(std::move(other.answer_)) {}

HelperProcess::~HelperProcess() {
    if (process_ != 0) stopAndReap();
}

HelperProcess::Read HelperProcess::read(std::span<std::byte> into, Deadline deadline) {
    while (!into.empty()) {
        if (!readableBefore(answer_.get(), deadline)) return Read::kLate;
        const ssize_t count = ::read(answer_.get(), into.data(), into.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return Read::kEnd;
        into = into.subspan(static_cast<std::size_t>(count));
    }
    return Read::kFull;
}

std::optional<Ending> HelperProcess::waitForEnd(Deadline deadline) {
    answer_.reset();
    if (!endedBefore(deadline)) return std::nullopt;
    return stopAndReap();
}

// Polls with growing pauses: a process that has closed its answer mostly ends at once. The process
// is not reaped here, so its number is not used again.
bool HelperProcess::endedBefore(Deadline deadline) const {
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

Ending HelperProcess::stopAndReap() {
    ::kill(-process_, SIGKILL);
    int status = 0;
    rusage usage{};
    pid_t reaped = 0;
    do {
        reaped = ::wait4(process_, &status, 0, &usage);
    } while (reaped < 0 && errno == EINTR);

    Ending ending;
    if (reaped == process_) {
        if (WIFEXITED(status)) ending.exitStatus = WEXITSTATUS(status);
        if (WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
        ending.processorTime = processorTime(usage);
    }
    process_ = 0;
    return ending;
}

}  // namespace tavio::helper
