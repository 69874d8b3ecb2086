#include "tools/tavio/text_face.h"

#include <cstdint>
#include <string_view>

#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/printing/job.h"

namespace tavio::tool {

namespace {

bool isControl(std::uint32_t code) {
    return (code < 0x20 && code != '\n') || (code >= 0x7F && code < 0xA0);
}

// text: UTF-8.
bool hasControl(std::string_view text) {
    while (!text.empty()) {
        const platform::Utf8Character letter = platform::firstCharacter(text);
        if (isControl(letter.codePoint)) return true;
        text.remove_prefix(letter.length);
    }
    return false;
}

}  // namespace

std::optional<std::string> whyNotInPrinterFace(const std::string& text) {
    const auto job = printing::encode(printing::Ticket().text(text, {}));
    if (job) return std::nullopt;
    const printing::Problem& problem = job.error().front();
    if (problem.kind != printing::ProblemKind::kUnprintableLetter || hasControl(text))
        return std::nullopt;
    return problem.sentence;
}

}  // namespace tavio::tool
