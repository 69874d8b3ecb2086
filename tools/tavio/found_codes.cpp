#include "tools/tavio/found_codes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <span>
#include <system_error>
#include <tuple>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/machine/bytes.h"
#include "tools/common/scan_answer.h"

namespace tavio::tool {

namespace {

// As a binary PBM file.
Bytes pbmOf(const platform::Picture& picture) {
    const std::string head =
        "P4\n" + std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n";
    Bytes file(head.begin(), head.end());
    const auto width = static_cast<std::size_t>(picture.width);
    const std::size_t rowBytes = (width + 7) / 8;
    file.resize(head.size() + rowBytes * static_cast<std::size_t>(picture.height));
    for (std::size_t index = 0; index < picture.pixels.size(); ++index) {
        if ((picture.pixels[index] & 0xFF) != 0) continue;
        const std::size_t column = index % width;
        file[head.size() + index / width * rowBytes + column / 8] |=
            static_cast<Byte>(0x80U >> (column % 8));
    }
    return file;
}

CodeSearch notLooked(helper::Failure failure) {
    switch (failure) {
        case helper::Failure::kMissing:
            return {{}, "the program tavio-scan, which finds them, is not installed"};
        case helper::Failure::kCpuLimit:
        case helper::Failure::kWallLimit:
            return {{}, "that took longer than allowed"};
        case helper::Failure::kMemoryLimit:
            return {{}, "that took more memory than allowed"};
        default:
            return {{}, "the program tavio-scan, which finds them, has failed"};
    }
}

// Takes the word up to the separator, and that.
std::string_view takeWord(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return word;
}

bool parse(std::string_view word, std::int32_t& number) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() && number >= 0;
}

std::optional<FoundCode> takeCode(std::string_view& text) {
    FoundCode code;
    std::int32_t hundredths = 0;
    std::int32_t count = 0;
    std::string_view line = takeWord(text, '\n');
    code.kind = takeWord(line, ' ');
    for (std::int32_t* number :
         {&code.left, &code.top, &code.width, &code.height, &hundredths, &count}) {
        if (!parse(takeWord(line, ' '), *number)) return std::nullopt;
    }
    const auto bytes = static_cast<std::size_t>(count);
    if (!line.empty() || text.size() <= bytes || text[bytes] != '\n') return std::nullopt;
    code.module = hundredths / 100.0;
    code.data = text.substr(0, bytes);
    text.remove_prefix(bytes + 1);
    return code;
}

}  // namespace

std::optional<std::vector<FoundCode>> parseCodes(std::string_view answer) {
    std::vector<FoundCode> codes;
    while (!answer.empty()) {
        auto code = takeCode(answer);
        if (!code) return std::nullopt;
        codes.push_back(std::move(*code));
    }
    std::ranges::sort(codes, {}, [](const FoundCode& code) {
        return std::tuple(code.top, code.left, code.kind, code.data);
    });
    return codes;
}

CodeSearch findCodes(const platform::Picture& ticket, const std::string& scanner) {
    helper::Asked asked = helper::ask({scan::kProgramName, scanner}, {}, pbmOf(ticket));
    if (!asked.answer) return notLooked(asked.failure);
    std::uint64_t count = 0;
    if (!asked.answer->fill(std::as_writable_bytes(std::span(&count, 1))))
        return notLooked(asked.answer->failure());
    if (count == scan::kOutOfMemory) return notLooked(helper::Failure::kMemoryLimit);
    if (count > scan::kMaxAnswerBytes) return notLooked(helper::Failure::kFailed);
    std::string text(static_cast<std::size_t>(count), '\0');
    if (!asked.answer->fill(std::as_writable_bytes(std::span(text))))
        return notLooked(asked.answer->failure());
    auto codes = asked.answer->endsHere() ? parseCodes(text) : std::nullopt;
    if (!codes) return notLooked(helper::Failure::kFailed);
    return {std::move(codes), ""};
}

}  // namespace tavio::tool
