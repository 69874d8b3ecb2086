#include "TavioIpadSDK/words/draw_words.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <utility>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/helper/number_text.h"
#include "TavioIpadSDK/words/answer.h"

namespace tavio::words {

namespace {

using helper::AnswerStream;
using helper::Failure;
using helper::shortestText;

DrawnWords refused(Outcome outcome) {
    DrawnWords drawn;
    drawn.outcome = outcome;
    return drawn;
}

Outcome outcomeOf(Failure failure) {
    switch (failure) {
        case Failure::kMissing:
            return Outcome::kHelperMissing;
        case Failure::kCpuLimit:
            return Outcome::kCpuLimit;
        case Failure::kWallLimit:
            return Outcome::kWallLimit;
        case Failure::kMemoryLimit:
            return Outcome::kMemoryLimit;
        case Failure::kUnreadable:
        case Failure::kFailed:
            return Outcome::kHelperFailed;
    }
    return Outcome::kHelperFailed;
}

template <typename Value>
std::string numberText(Value value) {
    return shortestText(static_cast<int>(value));
}

std::vector<std::string> questionOf(const WordsOrder& order) {
    const Setting& setting = order.setting;
    return {shortestText(setting.resolution), shortestText(setting.size),
            shortestText(setting.minSize),    numberText(setting.isBold),
            numberText(setting.isItalic),     shortestText(setting.width),
            shortestText(setting.height),     shortestText(setting.inset),
            numberText(setting.across),       numberText(setting.down),
            numberText(setting.fillsBox),     shortestText(order.text.size()),
            shortestText(order.face.size())};
}

Bytes inputOf(const WordsOrder& order) {
    Bytes input;
    input.reserve(order.text.size() + order.face.size() + order.font.size());
    input.insert(input.end(), order.text.begin(), order.text.end());
    input.insert(input.end(), order.face.begin(), order.face.end());
    input.insert(input.end(), order.font.begin(), order.font.end());
    return input;
}

bool isSize(double size, const Setting& setting) {
    return size >= setting.minSize && size <= setting.size;
}

// A drawing is the box, or no larger.
bool isDrawing(const AnswerHeader& header, const Setting& setting) {
    const bool fits = header.width >= 1 && header.width <= setting.width && header.height >= 1 &&
                      header.height <= setting.height;
    const bool isBox = header.width == setting.width && header.height == setting.height;
    return header.hasInk <= 1 && isSize(header.size, setting) && (setting.fillsBox ? isBox : fits);
}

bool isLargerBox(const AnswerHeader& header, const Setting& setting) {
    return header.width >= setting.width && header.height >= setting.height &&
           (header.width > setting.width || header.height > setting.height) &&
           isSize(header.size, setting);
}

// Padding bits that are black would print.
bool hasCleanPadding(const DrawnWords& drawn, std::size_t rowBytes) {
    const auto used = static_cast<std::size_t>(drawn.width);
    for (std::size_t row = 0; row < drawn.bits.size(); row += rowBytes) {
        if (used % 8 != 0 && (drawn.bits[row + used / 8] & 0xFFU >> used % 8) != 0) return false;
        const auto padding = std::span(drawn.bits).subspan(row, rowBytes).subspan((used + 7) / 8);
        if (std::ranges::any_of(padding, [](Byte bits) { return bits != 0; })) return false;
    }
    return true;
}

DrawnWords readRows(AnswerStream& answer, const AnswerHeader& header) {
    const std::size_t rowBytes = (static_cast<std::size_t>(header.width) + 63) / 64 * 8;
    DrawnWords drawn;
    drawn.width = header.width;
    drawn.height = header.height;
    drawn.size = header.size;
    drawn.bits.resize(rowBytes * static_cast<std::size_t>(header.height));
    if (!answer.fill(std::as_writable_bytes(std::span(drawn.bits))) || !answer.endsHere())
        return refused(outcomeOf(answer.failure()));
    if (!hasCleanPadding(drawn, rowBytes)) return refused(Outcome::kHelperFailed);
    drawn.outcome = header.hasInk != 0 ? Outcome::kDrawn : Outcome::kNothing;
    return drawn;
}

DrawnWords missing(const AnswerHeader& header) {
    if (header.letterCount < 1 || header.letterCount > kMaxLettersNamed)
        return refused(Outcome::kHelperFailed);
    DrawnWords drawn = refused(Outcome::kMissingLetters);
    drawn.letters.assign(header.letters.begin(), header.letters.begin() + header.letterCount);
    return drawn;
}

DrawnWords smallBox(const AnswerHeader& header, const Setting& setting) {
    if (!isLargerBox(header, setting)) return refused(Outcome::kHelperFailed);
    DrawnWords drawn = refused(Outcome::kSmallBox);
    drawn.width = header.width;
    drawn.height = header.height;
    drawn.size = header.size;
    return drawn;
}

// What a header means that no rows follow.
DrawnWords refusalOf(const AnswerHeader& header, const WordsOrder& order) {
    switch (header.outcome) {
        case Answer::kMissingLetters:
            return missing(header);
        case Answer::kNoFace:
            return refused(order.font.empty() ? Outcome::kNoFace : Outcome::kHelperFailed);
        case Answer::kNoFont:
            return refused(order.font.empty() ? Outcome::kHelperFailed : Outcome::kNoFont);
        case Answer::kSmallBox:
            return smallBox(header, order.setting);
        case Answer::kOutOfMemory:
            return refused(Outcome::kMemoryLimit);
        case Answer::kDrawn:
            break;
    }
    return refused(Outcome::kHelperFailed);
}

DrawnWords readAnswer(AnswerStream& answer, const WordsOrder& order) {
    AnswerHeader header;
    if (!answer.fill(std::as_writable_bytes(std::span(&header, 1))))
        return refused(outcomeOf(answer.failure()));
    if (header.magic != kAnswerMagic || header.version != kAnswerVersion)
        return refused(Outcome::kHelperFailed);
    if (header.outcome != Answer::kDrawn) return refusalOf(header, order);
    return isDrawing(header, order.setting) ? readRows(answer, header)
                                            : refused(Outcome::kHelperFailed);
}

}  // namespace

DrawnWords drawWords(const WordsOrder& order, const helper::Limits& limits,
                     const std::string& helper) noexcept {
    try {
        if (order.text.empty()) return refused(Outcome::kNothing);
        helper::Asked asked =
            helper::ask({"tavio-words", helper, true}, {questionOf(order), limits}, inputOf(order));
        return asked.answer ? readAnswer(*asked.answer, order) : refused(outcomeOf(asked.failure));
    } catch (const std::bad_alloc&) {
        return refused(Outcome::kMemoryLimit);
    } catch (...) {
        return refused(Outcome::kHelperFailed);
    }
}

}  // namespace tavio::words
