#include "tavio/printing/code_data.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/printing/code_rules.h"
#include "tavio/printing/letter_name.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// More than any symbol holds: the largest QR code has 7089 digits.
constexpr std::size_t kMaxBytes = 8000;

constexpr std::size_t kEanDigits = 13;
constexpr std::uint32_t kLastLatin1 = 0xFF;

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

tl::unexpected<Problem> badData(CodeKind kind, const std::string& sentence) {
    return problem(ProblemKind::kBadData, rulesOf(kind).name + sentence);
}

// ""€" (U+20AC), character 3": the character at the index of a byte.
std::string characterText(std::string_view text, std::size_t at) {
    std::size_t number = 1;
    for (std::size_t index = 0; index < at; ++number)
        index += platform::firstCharacter(text.substr(index)).length;
    const std::uint32_t code = platform::firstCharacter(text.substr(at)).codePoint;
    const std::string name = isControl(code) ? codeText(code) : letterName(text.substr(at));
    return name + ", character " + std::to_string(number);
}

Expected<std::string, Problem> digits(CodeKind kind, const std::string& data) {
    const auto bad = std::ranges::find_if_not(data, isDigit);
    if (bad == data.end()) return data;
    const auto at = static_cast<std::size_t>(bad - data.begin());
    return badData(kind, " holds digits only, not " + characterText(data, at) + ": leave it out");
}

// The last digit of an EAN-13 that begins with these 12.
char checkDigit(std::string_view digits) {
    int sum = 0;
    for (std::size_t index = 0; index < kEanDigits - 1; ++index)
        sum += (digits[index] - '0') * (index % 2 == 0 ? 1 : 3);
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

Expected<std::string, Problem> eanDigits(const std::string& data) {
    auto all = digits(CodeKind::kEan13, data);
    if (!all) return all;
    if (all->size() != kEanDigits && all->size() != kEanDigits - 1) {
        return badData(CodeKind::kEan13, " has 12 digits and a check digit, but the data have " +
                                             std::to_string(all->size()) + ": give 12 or 13");
    }
    const char right = checkDigit(*all);
    if (all->size() == kEanDigits && all->back() != right) {
        return badData(CodeKind::kEan13, std::string(" has a wrong check digit, ") + all->back() +
                                             ": make it " + right + ", or leave it out");
    }
    all->resize(kEanDigits - 1);
    return *all + right;
}

Expected<std::string, Problem> itfDigits(const std::string& data) {
    auto all = digits(CodeKind::kItf, data);
    if (all && all->size() % 2 != 0) all->insert(all->begin(), '0');
    return all;
}

Expected<std::string, Problem> latin1(const std::string& data) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < data.size(); at += length) {
        const auto character = platform::firstCharacter(std::string_view(data).substr(at));
        if (character.codePoint > kLastLatin1) {
            return badData(CodeKind::kCode128, " holds characters up to U+00FF, not " +
                                                   characterText(data, at) +
                                                   ": replace it, or take a QR code");
        }
        length = character.length;
    }
    return data;
}

}  // namespace

Expected<std::string, Problem> codeData(CodeKind kind, const std::string& data) {
    if (data.empty()) return badData(kind, " has no data: give some");
    if (data.size() > kMaxBytes) {
        return badData(kind, " cannot hold " + std::to_string(data.size()) +
                                 " bytes: give less, a link for example");
    }
    if (!platform::isUtf8(data)) return badData(kind, " holds text, and the data are not UTF-8");
    if (kind == CodeKind::kEan13) return eanDigits(data);
    if (kind == CodeKind::kItf) return itfDigits(data);
    if (kind == CodeKind::kCode128) return latin1(data);
    return data;
}

}  // namespace tavio::printing
