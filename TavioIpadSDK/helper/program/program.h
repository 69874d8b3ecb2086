// What one helper program does.
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

// The task that these words describe; none if they are wrong.
using TaskMaker = std::function<Task(const std::vector<std::string_view>& words)>;

struct Program {
    const char* usage;  // its words, and what its input is
    TaskMaker taskOf;
    std::span<const std::byte> outOfMemory;  // the answer if memory runs out
    // Loads what every task needs. May leave no thread behind.
    void (*warmUp)() = nullptr;
    // Opens an input for many tasks, which ignore their own; none if the program has no such tasks.
    TaskMaker (*open)(int input) = nullptr;
};

}  // namespace tavio::helper_program
