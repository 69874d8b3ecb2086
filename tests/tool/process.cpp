#include "tool/process.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavio::test {

namespace {

const char* const kProgram = TAVIO_BIN_DIR "/tavio";

// Becomes the program; only calls that are safe after fork().
[[noreturn]] void become(const char* folder, char* const* arguments) {
    if (::chdir(folder) == 0) ::execv(kProgram, arguments);
    ::_exit(127);
}

std::vector<char*> argumentList(std::vector<std::string>& arguments) {
    std::vector<char*> list{const_cast<char*>(kProgram)};
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    return list;
}

int exitStatusOf(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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

Ran ToolTest::tavio(const std::vector<std::string>& arguments) const {
    TemporaryFolder output;
    Ran ran = tavioInto(openForWriting(output / "out"), arguments);
    ran.out = readFile(output / "out");
    return ran;
}

Ran ToolTest::tavioInto(int output, const std::vector<std::string>& arguments) const {
    TemporaryFolder messages;
    std::vector<std::string> copies = arguments;
    std::vector<char*> list = argumentList(copies);
    const std::string path = folder.path();
    int err = openForWriting(messages / "err");
    pid_t child = ::fork();
    if (child == 0) {
        ::dup2(output, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        become(path.c_str(), list.data());
    }
    ::close(output);
    ::close(err);
    EXPECT_GT(child, 0);
    int status = exitStatusOf(child);
    return {status, "", readFile(messages / "err")};
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

std::string onTerminal(const std::string& folder, const std::vector<std::string>& arguments) {
    std::vector<std::string> copies = arguments;
    std::vector<char*> list = argumentList(copies);
    int terminal = -1;
    pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) become(folder.c_str(), list.data());
    EXPECT_GT(child, 0);
    std::string shown;
    std::array<char, 4096> buffer{};
    for (;;) {
        ssize_t count = ::read(terminal, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;  // EIO: the program has ended
        shown.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(terminal);
    EXPECT_EQ(exitStatusOf(child), 0) << shown;
    return shown;
}

}  // namespace tavio::test
