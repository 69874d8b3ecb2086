#include "TavioIpadSDK/helper/spawn.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tavio::helper {

namespace {

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

// A program's arguments or environment in the form that the system takes. The pointers point into
// `texts`.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
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

}  // namespace

std::vector<std::string> keptEnvironment() {
    std::vector<std::string> kept;
    for (const char* name : kKeptVariables) {
        if (const char* value = std::getenv(name)) kept.push_back(std::string(name) + "=" + value);
    }
    return kept;
}

std::optional<pid_t> spawn(const std::string& program, const std::vector<std::string>& arguments,
                           const Descriptor& input, const Descriptor& output) {
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = keptEnvironment();

    const FileActions actions(input, output);
    const Attributes attributes;
    if (!actions.ok() || !attributes.ok()) return std::nullopt;

    pid_t process = 0;
    const int error = ::posix_spawn(&process, program.c_str(), actions.get(), attributes.get(),
                                    pointersTo(words).data(), pointersTo(environment).data());
    return error == 0 ? std::optional(process) : std::nullopt;
}

}  // namespace tavio::helper
