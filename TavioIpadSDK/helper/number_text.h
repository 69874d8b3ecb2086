// Numbers as words of a command line.
#pragma once

#include <array>
#include <charconv>
#include <string>

namespace tavio::helper {

// The shortest text that is read back as the same number.
template <typename Number>
std::string shortestText(Number number) {
    std::array<char, 400> digits{};  // the longest double written out has 309 digits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

}  // namespace tavio::helper
