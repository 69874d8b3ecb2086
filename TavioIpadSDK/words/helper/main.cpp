// tavio-words: draws the words on its standard input. words/answer.h describes its arguments and its
// answer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/parse_number.h"
#include "TavioIpadSDK/helper/program/run.h"
#include "TavioIpadSDK/words/answer.h"
#include "TavioIpadSDK/words/helper/draw_block.h"
#include "TavioIpadSDK/words/helper/fatal_errors.h"
#include "TavioIpadSDK/words/helper/fit_block.h"
#include "TavioIpadSDK/words/helper/fonts.h"
#include "TavioIpadSDK/words/helper/missing_letters.h"
#include "TavioIpadSDK/words/helper/read_input.h"
#include "TavioIpadSDK/words/helper/warm_up.h"

namespace tavio::words_helper {

namespace {

using helper_program::answerWith;
using helper_program::parse;
using helper_program::Task;
using words::Answer;
using words::AnswerHeader;
using words::Setting;
using words::Side;

struct Request {
    Setting setting;
    std::size_t textBytes = 0;
    std::size_t faceBytes = 0;
};

bool parseFlag(std::string_view word, bool& flag) {
    flag = word == "1";
    return flag || word == "0";
}

bool isGood(const Setting& setting) {
    const auto isSide = [](std::int32_t dots) { return dots >= 1 && dots <= words::kMaxSide; };
    return setting.resolution >= 1 && setting.minSize >= words::kMinSize &&
           setting.size >= setting.minSize && setting.size <= words::kMaxSize &&
           isSide(setting.width) && isSide(setting.height) && setting.inset >= 0 &&
           setting.inset <= words::kMaxSide;
}

std::optional<Request> parseWords(const std::vector<std::string_view>& words) {
    Request request;
    Setting& setting = request.setting;
    const bool isRead =
        words.size() == 13 && parse(words[0], setting.resolution) &&
        parse(words[1], setting.size) && parse(words[2], setting.minSize) &&
        parseFlag(words[3], setting.isBold) && parseFlag(words[4], setting.isItalic) &&
        parse(words[5], setting.width) && parse(words[6], setting.height) &&
        parse(words[7], setting.inset) && parse(words[8], setting.across, Side::kEnd) &&
        parse(words[9], setting.down, Side::kEnd) && parseFlag(words[10], setting.fillsBox) &&
        parse(words[11], request.textBytes) && parse(words[12], request.faceBytes);
    return isRead && isGood(setting) ? std::optional(request) : std::nullopt;
}

bool writeHeader(const AnswerHeader& header) {
    return answerWith(std::as_bytes(std::span(&header, 1)));
}

bool refuse(Answer outcome) {
    AnswerHeader header;
    header.outcome = outcome;
    return writeHeader(header);
}

bool refuseLetters(const std::vector<std::uint32_t>& letters) {
    AnswerHeader header;
    header.outcome = Answer::kMissingLetters;
    header.letterCount = static_cast<std::uint32_t>(letters.size());
    std::ranges::copy(letters, header.letters.begin());
    return writeHeader(header);
}

bool refuseBox(const FittedBlock& smallest, const Setting& setting) {
    AnswerHeader header;
    header.outcome = Answer::kSmallBox;
    header.width = std::max(smallest.width, setting.width);
    header.height = std::max(smallest.height, setting.height);
    header.size = smallest.size;
    return writeHeader(header);
}

bool answerWithDrawing(const FittedBlock& fitted, const Setting& setting) {
    const Drawing drawing = drawBlock(fitted, setting);
    if (drawing.rows.empty()) return false;
    AnswerHeader header;
    header.outcome = Answer::kDrawn;
    header.width = drawing.width;
    header.height = drawing.height;
    header.hasInk = drawing.hasInk ? 1 : 0;
    header.size = fitted.size;
    return writeHeader(header) && answerWith(std::as_bytes(std::span(drawing.rows)));
}

bool answerWithWords(const Fonts& fonts, std::string_view content, const Setting& setting) {
    Text text(fonts, content, setting);
    const FittedBlock fitted = fitBlock(text, setting);
    if (fitted.block.lines.empty()) return refuseBox(fitted, setting);
    const auto missing = missingLetters(text.layout(), words::kMaxLettersNamed);
    if (!missing.empty()) return refuseLetters(missing);
    return fitted.fits ? answerWithDrawing(fitted, setting) : refuseBox(fitted, setting);
}

bool perform(const Request& request, int descriptor) {
    const std::optional<Bytes> input = readInput(descriptor);
    if (!input || request.textBytes > input->size() ||
        request.faceBytes > input->size() - request.textBytes) {
        return false;
    }
    answerFatalErrors();
    const std::string_view content(reinterpret_cast<const char*>(input->data()), input->size());
    const std::string face(content.substr(request.textBytes, request.faceBytes));
    const auto file = std::span(*input).subspan(request.textBytes + request.faceBytes);
    const std::optional<Fonts> fonts = file.empty() ? fontsOfMachine(face) : fontOfFile(file);
    if (!fonts) return refuse(file.empty() ? Answer::kNoFace : Answer::kNoFont);
    return answerWithWords(*fonts, content.substr(0, request.textBytes), request.setting);
}

Task taskOf(const std::vector<std::string_view>& words) {
    const std::optional<Request> request = parseWords(words);
    if (!request) return nullptr;
    return [request = *request](int descriptor) { return perform(request, descriptor); };
}

constexpr AnswerHeader kOutOfMemory = [] {
    AnswerHeader header;
    header.outcome = Answer::kOutOfMemory;
    return header;
}();

constexpr const char* kUsage =
    "RESOLUTION SIZE MIN-SIZE BOLD ITALIC WIDTH HEIGHT INSET ACROSS DOWN FILLS-BOX TEXT-BYTES "
    "FACE-BYTES < text-face-font";

}  // namespace

}  // namespace tavio::words_helper

int main(int count, char** arguments) {
    using namespace tavio::words_helper;
    const tavio::helper_program::Program program{
        kUsage, taskOf, std::as_bytes(std::span(&kOutOfMemory, 1)), warmUp};
    return tavio::helper_program::run(program, {arguments, static_cast<std::size_t>(count)});
}
