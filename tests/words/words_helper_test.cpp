// Any program that draws words: its possible answers and ends.

#include <chrono>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/words/answer.h"
#include "TavioIpadSDK/words/draw_words.h"
#include "pdf/pdf_builder.h"
#include "words/words_fixture.h"

namespace tavio::test {
namespace {

using words::Answer;
using words::AnswerHeader;
using words::DrawnWords;
using words::drawWords;
using words::Outcome;
using words::WordsOrder;

// The order that all answers below are for: a box of 20 x 2 dots.
WordsOrder smallOrder() {
    WordsOrder order = orderOf("Hi");
    order.font = {};
    order.setting.width = 20;
    order.setting.height = 2;
    order.setting.minSize = 4;
    order.setting.fillsBox = true;
    return order;
}

AnswerHeader drawnHeader() {
    AnswerHeader header;
    header.outcome = Answer::kDrawn;
    header.width = 20;
    header.height = 2;
    header.hasInk = 1;
    header.size = 4.5;
    return header;
}

// Two rows of 20 dots, padded to words of 64 bits.
std::string smallRows() {
    return std::string("\xFF\xFF\xF0\0\0\0\0\0\x80\0\x10\0\0\0\0\0", 16);
}

std::string bytesOf(const AnswerHeader& header) {
    return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class WordsHelper : public testing::Test {
  protected:
    DrawnWords withScript(const std::string& script, const WordsOrder& order = smallOrder(),
                          const helper::Limits& limits = {}) const {
        return drawWords(order, limits, folder_.writeProgram("helper", script));
    }
    DrawnWords withAnswer(const std::string& bytes, const WordsOrder& order = smallOrder()) const {
        folder_.write("answer", bytes);
        return withScript("exec cat '" + folder_.path("answer").string() + "'", order);
    }
    Outcome withHeader(const std::function<void(AnswerHeader&)>& change) const {
        AnswerHeader header = drawnHeader();
        change(header);
        return withAnswer(bytesOf(header) + smallRows()).outcome;
    }

    DocumentFolder folder_;
    const helper::Limits brief_{.wall = std::chrono::milliseconds(300)};
};

TEST_F(WordsHelper, MayAnswerWithDots) {
    const DrawnWords drawn = withAnswer(bytesOf(drawnHeader()) + smallRows());
    ASSERT_EQ(drawn.outcome, Outcome::kDrawn);
    EXPECT_EQ(drawn.width, 20);
    EXPECT_EQ(drawn.height, 2);
    EXPECT_EQ(drawn.size, 4.5);
    EXPECT_EQ(std::string(drawn.bits.begin(), drawn.bits.end()), smallRows());
}

TEST_F(WordsHelper, MayAnswerThatThereIsNothingToPrint) {
    EXPECT_EQ(withHeader([](AnswerHeader& header) { header.hasInk = 0; }), Outcome::kNothing);
}

TEST_F(WordsHelper, MayRefuse) {
    const std::vector<std::pair<Answer, Outcome>> refusals = {
        {Answer::kNoFace, Outcome::kNoFace},
        {Answer::kNoFont, Outcome::kHelperFailed},  // no font was given
        {Answer::kOutOfMemory, Outcome::kMemoryLimit},
        {Answer::kMissingLetters, Outcome::kHelperFailed},  // of which it names none
        {Answer::kSmallBox, Outcome::kHelperFailed},        // of which it says no size
        {static_cast<Answer>(6), Outcome::kHelperFailed},
    };
    for (const auto& [answer, outcome] : refusals) {
        AnswerHeader header;
        header.outcome = answer;
        EXPECT_EQ(withAnswer(bytesOf(header)).outcome, outcome);
    }
    AnswerHeader header;
    header.outcome = Answer::kNoFont;
    EXPECT_EQ(withAnswer(bytesOf(header), orderOf("Hi")).outcome, Outcome::kNoFont);
    header.outcome = Answer::kNoFace;
    EXPECT_EQ(withAnswer(bytesOf(header), orderOf("Hi")).outcome, Outcome::kHelperFailed);
}

TEST_F(WordsHelper, MayNameUpToSixteenLetters) {
    AnswerHeader header;
    header.outcome = Answer::kMissingLetters;
    header.letterCount = 2;
    header.letters = {0x65E5, 0x672C};
    const DrawnWords drawn = withAnswer(bytesOf(header));
    EXPECT_EQ(drawn.outcome, Outcome::kMissingLetters);
    EXPECT_EQ(drawn.letters, (std::vector<std::uint32_t>{0x65E5, 0x672C}));
    for (const std::uint32_t count : {0U, 17U, 0xFFFFFFFFU}) {
        header.letterCount = count;
        EXPECT_EQ(withAnswer(bytesOf(header)).outcome, Outcome::kHelperFailed);
    }
}

TEST_F(WordsHelper, MayNameALargerBox) {
    AnswerHeader header;
    header.outcome = Answer::kSmallBox;
    header.width = 20;
    header.height = 3;
    header.size = 4;
    const DrawnWords drawn = withAnswer(bytesOf(header));
    EXPECT_EQ(drawn.outcome, Outcome::kSmallBox);
    EXPECT_EQ(drawn.width, 20);
    EXPECT_EQ(drawn.height, 3);
    header.height = 2;
    EXPECT_EQ(withAnswer(bytesOf(header)).outcome, Outcome::kHelperFailed) << "that one it has";
    header.width = 19;
    header.height = 9;
    EXPECT_EQ(withAnswer(bytesOf(header)).outcome, Outcome::kHelperFailed) << "less wide";
}

TEST_F(WordsHelper, HasFailedIfItsAnswerIsGarbage) {
    EXPECT_EQ(withScript("echo 'Segmentation fault, or so.'").outcome, Outcome::kHelperFailed);
    EXPECT_EQ(withScript("exec head -c 100000 /dev/zero").outcome, Outcome::kHelperFailed);
    EXPECT_EQ(withScript("exec cat /dev/zero").outcome, Outcome::kHelperFailed);
}

TEST_F(WordsHelper, HasFailedIfItsAnswerIsCutShortOrTooLong) {
    const std::string whole = bytesOf(drawnHeader()) + smallRows();
    for (std::size_t size = 0; size < whole.size(); size += 7)
        EXPECT_EQ(withAnswer(whole.substr(0, size)).outcome, Outcome::kHelperFailed) << size;
    EXPECT_EQ(withAnswer(whole + "x").outcome, Outcome::kHelperFailed);
}

TEST_F(WordsHelper, HasFailedIfAFieldOfItsAnswerIsOutOfForm) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    const std::vector<std::function<void(AnswerHeader&)>> changes = {
        [](AnswerHeader& h) { h.magic ^= 1; },   [](AnswerHeader& h) { ++h.version; },
        [](AnswerHeader& h) { h.width = 19; },   [](AnswerHeader& h) { h.height = 1; },
        [](AnswerHeader& h) { h.width = 0; },    [](AnswerHeader& h) { h.height = -2; },
        [](AnswerHeader& h) { h.width = kMax; }, [](AnswerHeader& h) { h.hasInk = 2; },
        [](AnswerHeader& h) { h.size = 3.75; },  [](AnswerHeader& h) { h.size = 5.25; },
        [](AnswerHeader& h) { h.size = kNan; },
    };
    EXPECT_EQ(withHeader([](AnswerHeader&) {}), Outcome::kDrawn);
    for (std::size_t i = 0; i < changes.size(); ++i)
        EXPECT_EQ(withHeader(changes[i]), Outcome::kHelperFailed) << "change " << i;
}

TEST_F(WordsHelper, HasFailedIfADotIsBlackBesideTheDrawing) {
    for (const std::size_t byte : {2U, 3U, 7U, 10U, 15U}) {
        std::string rows = smallRows();
        rows[byte] = static_cast<char>(rows[byte] | 0x08);
        EXPECT_EQ(withAnswer(bytesOf(drawnHeader()) + rows).outcome, Outcome::kHelperFailed)
            << byte;
    }
}

TEST_F(WordsHelper, MayDrawLessThanTheBoxIfItDoesNotFillIt) {
    WordsOrder order = smallOrder();
    order.setting.fillsBox = false;
    AnswerHeader header = drawnHeader();
    header.width = 8;
    header.height = 1;
    const DrawnWords drawn =
        withAnswer(bytesOf(header) + std::string("\xFF\0\0\0\0\0\0\0", 8), order);
    EXPECT_EQ(drawn.outcome, Outcome::kDrawn);
    EXPECT_EQ(drawn.width, 8);
    header.width = 21;
    EXPECT_EQ(withAnswer(bytesOf(header) + smallRows(), order).outcome, Outcome::kHelperFailed);
}

TEST_F(WordsHelper, HasFailedIfItDies) {
    EXPECT_EQ(withScript("exit 0").outcome, Outcome::kHelperFailed);
    EXPECT_EQ(withScript("kill -SEGV $$").outcome, Outcome::kHelperFailed);
    EXPECT_EQ(withScript("kill -XCPU $$").outcome, Outcome::kCpuLimit);
    EXPECT_EQ(withScript("exit 127").outcome, Outcome::kHelperMissing);
}

TEST_F(WordsHelper, IsStoppedIfItNeverAnswers) {
    EXPECT_EQ(withScript("exec sleep 1000", smallOrder(), brief_).outcome, Outcome::kWallLimit);
}

TEST_F(WordsHelper, IsToldTheSettingAndTheTexts) {
    const std::string note = folder_.path("note").string();
    WordsOrder order = smallOrder();
    order.setting = {.resolution = 300,
                     .size = 9.5,
                     .minSize = 7,
                     .isBold = true,
                     .width = 300,
                     .height = 80,
                     .inset = 3,
                     .across = words::Side::kMiddle,
                     .down = words::Side::kEnd,
                     .fillsBox = true};
    order.text = "Row F";
    order.face = "serif";
    const Bytes font = {'F', 'O', 'N', 'T'};
    order.font = font;
    withScript("{ echo \"$*\"; cat; } > '" + note + "'", order,
               {.cpu = std::chrono::seconds(7), .memoryBytes = 123456789});
    EXPECT_EQ(contentOf(note), "7 123456789 300 9.5 7 1 0 300 80 3 1 2 1 5 5\nRow FserifFONT");
}

}  // namespace
}  // namespace tavio::test
