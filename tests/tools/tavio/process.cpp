#include "tools/tavio/process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace tavio::test {

namespace {

const std::string kPrograms = TAVIO_BIN_DIR "/";

// Becomes the program; only calls that are safe after fork(). Signals do what they do by default,
// also where the tests run in the background.
[[noreturn]] void become(const char* folder, char* const* arguments) {
    for (int number : {SIGINT, SIGTERM}) ::signal(number, SIG_DFL);
    if (::chdir(folder) == 0) ::execv(arguments[0], arguments);
    ::_exit(127);
}

// A command line as execv() takes it.
class Arguments {
  public:
    Arguments(const std::string& program, const std::vector<std::string>& arguments)
        : texts_{kPrograms + program} {
        texts_.insert(texts_.end(), arguments.begin(), arguments.end());
        for (std::string& text : texts_) list_.push_back(text.data());
        list_.push_back(nullptr);
    }
    char* const* list() const { return list_.data(); }

  private:
    std::vector<std::string> texts_;
    std::vector<char*> list_;
};

Ran ended(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return {};
    }
    Ran ran;
    if (WIFEXITED(status)) ran.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) ran.signal = WTERMSIG(status);
    return ran;
}

int openForWriting(const std::string& path) {
    int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    EXPECT_GE(descriptor, 0) << path;
    return descriptor;
}

std::map<std::string, std::string> contentsOf(const TemporaryFolder& folder) {
    std::map<std::string, std::string> contents;
    for (const std::string& name : folder.names()) {
        bool regular = std::filesystem::is_regular_file(folder / name);
        contents[name] = regular ? readFile(folder / name) : "";
    }
    return contents;
}

}  // namespace

Running::Running(const std::string& folder, const std::vector<std::string>& arguments, int output,
                 const std::string& program) {
    const Arguments line(program, arguments);
    const int out = output < 0 ? openForWriting(kept_ / "out") : output;
    const int err = openForWriting(kept_ / "err");
    child_ = ::fork();
    if (child_ == 0) {
        ::dup2(out, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        become(folder.c_str(), line.list());
    }
    ::close(out);
    ::close(err);
    EXPECT_GT(child_, 0);
}

Running::~Running() {
    if (child_ <= 0) return;
    ::kill(child_, SIGKILL);
    ended(child_);
}

void Running::signal(int number) const {
    EXPECT_EQ(::kill(child_, number), 0);
}

Ran Running::finish() {
    Ran ran = ended(std::exchange(child_, -1));
    if (kept_.names().count("out") != 0) ran.out = readFile(kept_ / "out");
    ran.err = readFile(kept_ / "err");
    return ran;
}

Ran ToolTest::tavio(const std::vector<std::string>& arguments) const {
    return Running(folder.path(), arguments).finish();
}

Ran ToolTest::tavioInto(int output, const std::vector<std::string>& arguments) const {
    return Running(folder.path(), arguments, output).finish();
}

std::string ToolTest::bytesOf(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--to", "file:job.bin"});
    Ran ran = tavio(arguments);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "");
    return readFile(at("job.bin"));
}

void ToolTest::expectRefusal(const std::vector<std::string>& arguments,
                             const std::string& line) const {
    auto before = contentsOf(folder);
    Ran ran = tavio(arguments);
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, line + "\n");
    EXPECT_EQ(contentsOf(folder), before);
}

std::string onTerminal(const std::string& folder, const std::vector<std::string>& arguments,
                       const TerminalUse& use) {
    const Arguments line("tavio", arguments);
    int terminal = -1;
    pid_t child = ::forkpty(&terminal, nullptr, nullptr, &use.size);
    if (child == 0) become(folder.c_str(), line.list());
    EXPECT_GT(child, 0);
    std::string shown;
    std::array<char, 4096> buffer{};
    for (;;) {
        ssize_t count = ::read(terminal, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;  // EIO: the program has ended
        shown.append(buffer.data(), static_cast<std::size_t>(count));
        if (use.onShown) use.onShown(shown, terminal);
    }
    ::close(terminal);
    EXPECT_EQ(ended(child).status, 0) << shown;
    return shown;
}

}  // namespace tavio::test
