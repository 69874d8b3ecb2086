// Numbers from words.
#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

namespace tavio::helper_program {

// False if the text is not the number and nothing else.
template <typename Number>
bool parse(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

// A number from 0 to the last value of the enumeration.
template <typename Enumeration>
bool parse(std::string_view text, Enumeration& value, Enumeration last) {
    int number = 0;
    if (!parse(text, number) || number < 0 || number > static_cast<int>(last)) return false;
    value = static_cast<Enumeration>(number);
    return true;
}

}  // namespace tavio::helper_program
