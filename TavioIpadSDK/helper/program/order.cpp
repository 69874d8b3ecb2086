#include "TavioIpadSDK/helper/program/order.h"

#include <utility>

#include "TavioIpadSDK/helper/program/parse_number.h"

namespace tavio::helper_program {

std::optional<Limits> limitsOf(const std::vector<std::string_view>& words) {
    Limits limits;
    if (words.size() < 2 || !parse(words[0], limits.cpuSeconds) ||
        !parse(words[1], limits.memoryBytes)) {
        return std::nullopt;
    }
    return limits;
}

std::optional<Order> orderOf(const TaskMaker& taskOf, const std::vector<std::string_view>& words) {
    const std::optional<Limits> limits = limitsOf(words);
    if (!limits) return std::nullopt;
    Task task = taskOf({words.begin() + 2, words.end()});
    return task ? std::optional(Order{*limits, std::move(task)}) : std::nullopt;
}

}  // namespace tavio::helper_program
