#include "tavio/printing/words_problem.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "TavioIpadSDK/helper/number_text.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/printing/fit_warnings.h"
#include "tavio/printing/letter_name.h"
#include "tavio/printing/placed_dots.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

using words::DrawnWords;
using words::Outcome;

// More than a ticket of the largest size holds in letters of one point.
constexpr std::size_t kMaxTextBytes = std::size_t{1} << 20U;

Problem problemOfKind(ProblemKind kind, std::string sentence) {
    return problem(kind, std::move(sentence)).value();
}

bool mayBeInWords(std::uint32_t letter) {
    return !isControl(letter) || letter == '\n' || letter == '\r' || letter == '\t';
}

// The first place in the text at which a character fulfils the condition; none if no one does.
template <typename Condition>
std::optional<std::string_view> findCharacter(std::string_view text, Condition condition) {
    while (!text.empty()) {
        const platform::Utf8Character letter = platform::firstCharacter(text);
        if (condition(letter.codePoint)) return text;
        text.remove_prefix(letter.length);
    }
    return std::nullopt;
}

std::optional<Problem> problemOfText(std::string_view text) {
    if (text.size() > kMaxTextBytes) {
        return problemOfKind(ProblemKind::kTooLarge, "the words are longer than " +
                                                         std::to_string(kMaxTextBytes) +
                                                         " bytes, the limit for one element");
    }
    if (!platform::isUtf8(text))
        return problemOfKind(ProblemKind::kNotUtf8, "the words are not UTF-8");
    if (text.empty())
        return problemOfKind(ProblemKind::kNoDots, "there are no words: the text is empty");
    const auto control =
        findCharacter(text, [](std::uint32_t letter) { return !mayBeInWords(letter); });
    if (!control) return std::nullopt;
    return problemOfKind(ProblemKind::kUnprintableLetter,
                         "the words have the control character " +
                             codeText(platform::firstCharacter(*control).codePoint) +
                             ": leave it out");
}

std::optional<Problem> problemOfFace(const std::string& face) {
    if (!platform::isUtf8(face) || face.find('\0') != std::string::npos)
        return problemOfKind(ProblemKind::kBadSetting, "the name of the face is not UTF-8 text");
    if (!face.empty()) return std::nullopt;
    return problemOfKind(ProblemKind::kNoFace,
                         R"(there is no face without a name: give one such as "sans")");
}

std::optional<Problem> problemOfSizes(const WordsOptions& options) {
    const auto isSize = [](double points) {
        return points >= words::kMinSize && points <= words::kMaxSize;
    };
    const bool hasMin = options.minSize != 0;
    if (isSize(options.size) && (!hasMin || isSize(options.minSize))) {
        if (options.minSize <= options.size) return std::nullopt;
        return problemOfKind(ProblemKind::kBadSetting,
                             "the smallest size of the words is above their size");
    }
    return problemOfKind(ProblemKind::kBadSetting, "words are 1 to 1000 points in size");
}

std::optional<Problem> problemOfBox(const Size& box) {
    if (box.width < 1 || box.height < 1) {
        return problemOfKind(ProblemKind::kBadSetting, "the words' box is " +
                                                           dotsText({box.width, box.height}) +
                                                           ": give 1 dot or more for both sides");
    }
    if (box.width <= words::kMaxSide && box.height <= words::kMaxSide) return std::nullopt;
    return tooLarge("the words' box", box).value();
}

std::string pointsText(double points) {
    return helper::shortestText(points) + (points == 1 ? " point" : " points");
}

// The names of the letters as they stand in the text; one that is not there was made up.
std::optional<std::string> lettersText(const std::vector<std::uint32_t>& letters,
                                       std::string_view text) {
    std::string names;
    for (const std::uint32_t missing : letters) {
        const auto found =
            findCharacter(text, [missing](std::uint32_t letter) { return letter == missing; });
        if (!found) return std::nullopt;
        names += (names.empty() ? "" : ", ") + letterName(*found);
    }
    return names;
}

tl::unexpected<Problem> helperFailed() {
    return problem(ProblemKind::kHelperFailed,
                   "the words cannot be drawn: the program tavio-words, which draws them, failed");
}

tl::unexpected<Problem> missingLetters(const DrawnWords& drawn, const element::Words& words) {
    const auto names = lettersText(drawn.letters, words.text);
    if (!names) return helperFailed();
    const std::string fonts =
        words.options.font ? shownName(*words.options.font) + " has not" : "no font has";
    return problem(ProblemKind::kUnprintableLetter,
                   fonts + (drawn.letters.size() == 1 ? " the letter " : " the letters ") + *names);
}

tl::unexpected<Problem> smallBox(const DrawnWords& drawn, bool isTurned) {
    const std::string sentence = "the words do not fit at " + pointsText(drawn.size);
    if (drawn.width > words::kMaxSide || drawn.height > words::kMaxSide)
        return problem(ProblemKind::kSmallBox, sentence + " into any box: make them fewer");
    const intake::DotSize box = isTurned ? intake::DotSize{drawn.height, drawn.width}
                                         : intake::DotSize{drawn.width, drawn.height};
    return problem(ProblemKind::kSmallBox,
                   sentence + ": a box of " + dotsText(box) + " would do, or a smaller size");
}

tl::unexpected<Problem> overLimit(ProblemKind kind, const std::string& limit) {
    return problem(kind, "the words cannot be drawn: it went over the " + limit + " limit");
}

}  // namespace

std::optional<Problem> problemOf(const element::Words& words) {
    const WordsOptions& options = words.options;
    if (auto problem = problemOfText(words.text)) return problem;
    if (auto problem = problemOfFace(options.face)) return problem;
    if (auto problem = problemOfSizes(options)) return problem;
    return options.box ? problemOfBox(*options.box) : std::nullopt;
}

tl::unexpected<Problem> wordsProblem(const DrawnWords& drawn, const element::Words& words,
                                     bool isTurned) {
    switch (drawn.outcome) {
        case Outcome::kNothing:
            return problem(ProblemKind::kNoDots, "the words come to 0 dots: they are only spaces");
        case Outcome::kMissingLetters:
            return missingLetters(drawn, words);
        case Outcome::kNoFace:
            return problem(ProblemKind::kNoFace, "this machine has no face \"" +
                                                     words.options.face +
                                                     "\": install it, or give its font file");
        case Outcome::kNoFont:
            return problem(ProblemKind::kNoFace,
                           (words.options.font ? shownName(*words.options.font) : "the file") +
                               " is no TrueType or OpenType font");
        case Outcome::kSmallBox:
            return smallBox(drawn, isTurned);
        case Outcome::kCpuLimit:
            return overLimit(ProblemKind::kOverTime, "processor time");
        case Outcome::kWallLimit:
            return overLimit(ProblemKind::kOverTime, "waiting time");
        case Outcome::kMemoryLimit:
            return overLimit(ProblemKind::kOverMemory, "memory");
        case Outcome::kHelperMissing:
            return problem(ProblemKind::kHelperMissing,
                           "the words cannot be drawn: the program tavio-words, which draws them, "
                           "cannot be started");
        case Outcome::kDrawn:
        case Outcome::kHelperFailed:
            break;
    }
    return helperFailed();
}

}  // namespace tavio::printing
