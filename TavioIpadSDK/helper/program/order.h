// A question as a helper program understands it.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/helper/program/limits.h"
#include "TavioIpadSDK/helper/program/program.h"

namespace tavio::helper_program {

struct Order {
    Limits limits;
    Task task;
};

// words: CPU MEMORY WORDS... (helper/ask_program.h). Returns none if they are wrong.
std::optional<Order> orderOf(const TaskMaker& taskOf, const std::vector<std::string_view>& words);

// CPU MEMORY alone.
std::optional<Limits> limitsOf(const std::vector<std::string_view>& words);

}  // namespace tavio::helper_program
