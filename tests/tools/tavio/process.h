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

// A program while it runs.
class Running {
  public:
    // output: a descriptor for its standard output, closed here; -1 to keep the output.
    Running(const std::string& folder, const std::vector<std::string>& arguments, int output = -1,
            const std::string& program = "tavio");
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

    void signal(int number) const;

    // Waits until it ends.
    Ran finish();

  private:
    TemporaryFolder kept_;
    pid_t child_ = -1;
};

// A test that runs the program with the current folder being `folder`.
class ToolTest : public testing::Test {
  protected:
    Ran tavio(const std::vector<std::string>& arguments) const;

    // Runs it with this descriptor, which is closed here afterwards, as standard output.
    Ran tavioInto(int output, const std::vector<std::string>& arguments) const;

    // Runs it with file:job.bin as its target, expects success in silence and gives the bytes.
    std::string bytesOf(std::vector<std::string> arguments) const;

    // Runs it and expects exit status 1, nothing on standard output, exactly this line on standard
    // error, and that nothing in the folder appeared, vanished or changed.
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& line) const;

    std::string at(const std::string& name) const { return folder / name; }

    TemporaryFolder folder;
};

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
