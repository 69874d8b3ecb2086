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
    std::uint64_t count = 0;  // of all lines, those of other pages included

    // For each problem the number, from 0, of the line that it lies in; 0 too where there is none.
    std::vector<std::uint64_t> problemLines;
};

inline constexpr std::size_t kMaxCommandLines = 2000;  // of a page

// Decodes all of the bytes and keeps the lines from number `first` on, kMaxCommandLines at most;
// the memory that it takes does not grow with the bytes. Asks `goOn` now and then, and stops where that
// says no.
CommandPage commandPage(std::span<const Byte> bytes, const ProblemList& problems,
                        std::uint64_t first, const std::function<bool()>& goOn = {});

}  // namespace tavio::virtual_printer
