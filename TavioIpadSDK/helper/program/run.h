// What every helper program does: helper/ask_program.h describes its command line.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace tavio::helper_program {

// Reads the input from this file descriptor, which it may close, and answers (answer.h). False if that
// is not possible.
using Task = std::function<bool(int input)>;

// What one program does.
struct Program {
    const char* usage;                                     // its words, and what its input is
    Task (*taskOf)(const std::vector<std::string_view>&);  // none if the words are wrong
    std::span<const std::byte> outOfMemory;                // the answer if memory runs out
};

// The whole of main(): reads the command line, applies its limits, performs the task. Returns the exit
// status (exit_status.h).
int run(const Program& program, std::span<char* const> arguments);

}  // namespace tavio::helper_program
