// Runs the real program in a folder of its own.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tavio::test {

struct Ran {
    int status = -1;  // exit status; -1 when a signal ended the program
    std::string out;  // "" where it went elsewhere
    std::string err;
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

// A program on a pseudo-terminal that is its standard error: what it wrote there, as it came.
std::string onTerminal(const std::string& folder, const std::vector<std::string>& arguments);

}  // namespace tavio::test
