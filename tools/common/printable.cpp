#include "tools/common/printable.h"

#include <cstddef>

namespace tavio::command_line {

namespace {

unsigned char codeAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : '\0';
}

// The number of bytes of the control character at the index; 0 if there is none. U+0080 to U+009F,
// which also control terminals, have two bytes in UTF-8.
std::size_t controlSize(std::string_view text, std::size_t index) {
    const unsigned char code = codeAt(text, index);
    if (code < 0x20 || code == 0x7F) return 1;
    const unsigned char second = codeAt(text, index + 1);
    return code == 0xC2 && second >= 0x80 && second <= 0x9F ? 2 : 0;
}

}  // namespace

std::string printable(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string result;
    std::size_t toShow = 0;  // bytes of a control character that are not shown yet
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (toShow == 0) toShow = controlSize(text, index);
        if (toShow == 0) {
            result += text[index];
            continue;
        }
        const unsigned char code = codeAt(text, index);
        result += {'\\', 'x', kDigits[code >> 4], kDigits[code & 15]};
        --toShow;
    }
    return result;
}

}  // namespace tavio::command_line
