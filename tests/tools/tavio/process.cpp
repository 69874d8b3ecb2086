#include "tools/tavio/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <pty.h>
#include <span>
#include <sstream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/machine/write_all.h"

namespace tavio::test {

namespace {

const std::string kPrograms = TAVIO_BIN_DIR "/";

// Texts as execve() takes them.
class TextList {
  public:
    explicit TextList(std::vector<std::string> texts) : texts_(std::move(texts)) {
        for (std::string& text : texts_) list_.push_back(text.data());
        list_.push_back(nullptr);
    }
    char* const* list() const { return list_.data(); }

  private:
    std::vector<std::string> texts_;
    std::vector<char*> list_;
};

std::vector<std::string> wordsOf(const std::string& program,
                                 const std::vector<std::string>& arguments) {
    std::vector<std::string> words{kPrograms + program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

// The test's own environment without what names a printer, and more.
std::vector<std::string> environmentOf(const std::string& folder,
                                       const std::vector<std::string>& more) {
    std::vector<std::string> environment;
    for (char** each = environ; *each != nullptr; ++each) {
        const std::string_view text = *each;
        if (text.starts_with("TAVIO_PRINTER=") || text.starts_with("XDG_CONFIG_HOME=")) continue;
        environment.emplace_back(text);
    }
    environment.push_back("XDG_CONFIG_HOME=" + folder + "/config");
    environment.insert(environment.end(), more.begin(), more.end());
    return environment;
}

// A command line with its folder and environment.
struct CommandLine {
    std::string folder;
    TextList words;
    TextList environment;
};

// Becomes the program; only calls that are safe after fork(). Signals do what they do by default,
// also where the tests run in the background.
[[noreturn]] void become(const CommandLine& line) {
    for (int number : {SIGINT, SIGTERM, SIGPIPE}) ::signal(number, SIG_DFL);
    if (::chdir(line.folder.c_str()) == 0) {
        ::execve(line.words.list()[0], line.words.list(), line.environment.list());
    }
    ::_exit(127);
}

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

std::vector<std::string>& keptJson() {
    static std::vector<std::string> kept;
    return kept;
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

Running::Running(const std::string& folder, const std::vector<std::string>& arguments, Start start)
    : writesJson_(std::find(arguments.begin(), arguments.end(), "--json") != arguments.end()) {
    const CommandLine line{folder, TextList(wordsOf(start.program, arguments)),
                           TextList(environmentOf(folder, start.environment))};
    const machine::Descriptor out(start.output < 0 ? openForWriting(kept_ / "out") : start.output);
    const machine::Descriptor err(openForWriting(kept_ / "err"));
    const machine::Descriptor in(start.input);
    child_ = ::fork();
    if (child_ == 0) {
        if (in.isOpen()) ::dup2(in.get(), STDIN_FILENO);
        ::dup2(out.get(), STDOUT_FILENO);
        if (start.withoutOutput) ::close(STDOUT_FILENO);
        ::dup2(err.get(), STDERR_FILENO);
        become(line);
    }
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
    if (writesJson_ && !ran.out.empty()) keptJson().push_back(ran.out);
    return ran;
}

std::string withoutLosses(const std::string& err) {
    std::istringstream lines(err);
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        const bool isLoss = line.starts_with("tavio: warning: ") &&
                            line.find(" with black dots ") != std::string::npos;
        if (!isLoss) kept += line + "\n";
    }
    return kept;
}

const std::vector<std::string>& writtenJson() {
    return keptJson();
}

Ran ToolTest::tavio(const std::vector<std::string>& arguments) const {
    return Running(folder.path(), arguments).finish();
}

Ran ToolTest::tavioFrom(const std::string& input, const std::vector<std::string>& arguments) const {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    machine::Descriptor writing(ends[1]);
    Running running(folder.path(), arguments, Start{.input = ends[0]});
    ::signal(SIGPIPE, SIG_IGN);  // the program may end without reading all of it
    machine::writeAll(writing.get(), std::as_bytes(std::span(input)));
    writing.reset();
    return running.finish();
}

Ran ToolTest::tavioInto(int output, const std::vector<std::string>& arguments) const {
    return Running(folder.path(), arguments, output).finish();
}

std::string ToolTest::bytesOf(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--to", "file:job.bin"});
    Ran ran = tavio(arguments);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(withoutLosses(ran.err), "");
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
    const CommandLine line{folder, TextList(wordsOf("tavio", arguments)),
                           TextList(environmentOf(folder, {}))};
    int terminal = -1;
    pid_t child = ::forkpty(&terminal, nullptr, nullptr, &use.size);
    if (child == 0) become(line);
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
