// Reading command lines.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// The name and the version of the program.
extern const char* const kVersion;

// What reading a command line has come to.
struct Reading {
    enum class End { kRead, kShown, kWrong };

    End end = End::kRead;
    std::string text;  // kShown: help or the version, for standard output; kWrong: one sentence
};

// Reads any number of command lines of the same commands.
class CommandLine {
  public:
    // What is read is written into `options`, which the commands must have been made for.
    CommandLine(const CommandSpec& commands, Options& options);
    ~CommandLine();

    // Takes the words after the program's name. The options keep what is not given.
    Reading read(std::vector<std::string> words);

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace tavio::tool
