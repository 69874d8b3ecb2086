// Runs the real program in a folder of its own.
#pragma once

#include <functional>
#include <string>
#include <sys/ioctl.h>
#include <sys/types.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tavio::test {

struct Ran {
    int status = -1;  // exit status; -1 when a signal ended the program
    int signal = 0;   // the signal that ended it, 0 if none did
    std::string out;  // "" where it went elsewhere
    std::string err;
};

// What a program is started with.
struct Start {
    std::string program = "tavio";
    int output = -1;  // a descriptor for its standard output, closed here; -1 to keep the output
    int input = -1;   // the same for its standard input; -1 for the test's own
    bool withoutOutput = false;              // its standard output is closed
    std::vector<std::string> environment{};  // "NAME=value"
};

// A program while it runs. Its list of named printers is at XDG_CONFIG_HOME=`folder`/config, and every
// object that it writes with --json is kept for json_schema_test.cpp.
class Running {
  public:
    Running(const std::string& folder, const std::vector<std::string>& arguments, Start start);
    Running(const std::string& folder, const std::vector<std::string>& arguments, int output = -1,
            const std::string& program = "tavio")
        : Running(folder, arguments, Start{.program = program, .output = output}) {}
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

    void signal(int number) const;

    // Waits until it ends.
    Ran finish();

  private:
    TemporaryFolder kept_;
    bool writesJson_;
    pid_t child_ = -1;
};

// A test that runs the program with the current folder being `folder`.
class ToolTest : public testing::Test {
  protected:
    Ran tavio(const std::vector<std::string>& arguments) const;

    // Runs it with this text coming through a pipe on standard input.
    Ran tavioFrom(const std::string& input, const std::vector<std::string>& arguments) const;

    // Runs it with this descriptor, which is closed here afterwards, as standard output.
    Ran tavioInto(int output, const std::vector<std::string>& arguments) const;

    // Runs it with file:job.bin as its target, expects success in silence, but for warnings of lost
    // dots, and gives the bytes.
    std::string bytesOf(std::vector<std::string> arguments) const;

    // Runs it and expects exit status 1, nothing on standard output, exactly this line on standard
    // error, and that nothing in the folder appeared, vanished or changed.
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& line) const;

    std::string at(const std::string& name) const { return folder / name; }

    TemporaryFolder folder;
};

// Standard error without the warnings that rows or columns with black dots are lost.
std::string withoutLosses(const std::string& err);

// The JSON objects that programs have written so far.
const std::vector<std::string>& writtenJson();

struct TerminalUse {
    winsize size{};  // of zeros: a terminal that does not know its size

    // Called each time that something has been shown, with all of it so far and the descriptor
    // that types into the terminal.
    std::function<void(const std::string& shown, int keyboard)> onShown;
};

// A program on a pseudo-terminal, which is its standard output and error: what it wrote there, as
// it came. Expects success.
std::string onTerminal(const std::string& folder, const std::vector<std::string>& arguments,
                       const TerminalUse& use = {});

}  // namespace tavio::test
