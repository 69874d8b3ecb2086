// The decoded commands of a ticket, a page of them at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tavio/virtual-printer/problems.h"
#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

struct CommandLine {
    std::uint64_t offset = 0;
    std::string command;  // escaped; "" for text
    std::string meaning;
};

struct CommandPage {
    std::vector<CommandLine> lines;
    std::uint64_t count = 0;  // of all lines, on all pages

    // For each problem the number of its line, from 0; also 0 if there is none.
    std::vector<std::uint64_t> problemLines;
};

inline constexpr std::size_t kMaxCommandLines = 2000;  // of a page

// Decodes all bytes and keeps the lines from number `first` on, kMaxCommandLines at most. Its
// memory does not grow with the bytes. Calls `shouldContinue` now and then, and stops when it
// returns false.
CommandPage commandPage(std::span<const Byte> bytes, const ProblemList& problems,
                        std::uint64_t first, const std::function<bool()>& shouldContinue = {});

}  // namespace tavio::virtual_printer
