// A code's data in letters below it.

#include <algorithm>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "printing/drawn_code.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::DrawnCode;
using test::drawnCode;
using test::modulesOf;
using test::ofModule;
using test::Rows;
using test::ticketOf;
using test::turned;
using test::withQuietZone;

DrawnCode withText(CodeKind kind, const std::string& data, std::int32_t module, int turns = 0) {
    CodeOptions options = ofModule(module);
    options.hasText = true;
    options.barHeight = 60;
    options.barReduction = 0;
    options.turn = static_cast<Turn>(static_cast<int>(Turn::k0) + turns);
    return drawnCode(Ticket(ticketOf()).code(kind, data, {}, options));
}

bool hasInk(const Rows& rows, std::size_t left, std::size_t top, std::size_t width,
            std::size_t height) {
    for (std::size_t row = top; row < top + height; ++row)
        if (rows[row].substr(left, width).find('X') != std::string::npos) return true;
    return false;
}

TEST(CodeText, OfEan13LiesBetweenLongerGuards) {
    const std::size_t module = 3;
    const auto code = withText(CodeKind::kEan13, "400638133393", 3);
    EXPECT_EQ(code.rectangle.size, (Size{113 * 3, 60 + 9 * 3}));
    const std::string guards =
        "X.X" + std::string(42, '.') + ".X.X." + std::string(42, '.') + "X.X";
    const Rows below{code.rows.begin() + 60, code.rows.begin() + 63};
    EXPECT_EQ(modulesOf(below, module), withQuietZone({guards}, 11, 7, 0));
    const auto zone = [&](std::size_t column, std::size_t columns) {
        return hasInk(code.rows, column * module, 63, columns * module, 24);
    };
    EXPECT_TRUE(zone(1, 8));
    EXPECT_TRUE(zone(14, 42));
    EXPECT_TRUE(zone(61, 42));
    for (const std::size_t column : {std::size_t{0}, std::size_t{9}, std::size_t{56}})
        EXPECT_FALSE(hasInk(code.rows, column * module, 60, module, 27)) << column;
    EXPECT_FALSE(zone(106, 7));
}

TEST(CodeText, OfOtherBarsIsCentredBelowThem) {
    for (const CodeKind kind : {CodeKind::kCode128, CodeKind::kItf}) {
        const auto code = withText(kind, "123456", 2);
        const std::size_t height = code.rows.size();
        EXPECT_FALSE(hasInk(code.rows, 0, 60, code.rows[0].size(), 2));
        std::size_t left = code.rows[0].size();
        std::size_t right = 0;
        for (std::size_t row = 60; row < height; ++row) {
            if (!hasInk(code.rows, 0, row, code.rows[row].size(), 1)) continue;
            left = std::min(left, code.rows[row].find('X'));
            right = std::max(right, code.rows[row].rfind('X'));
        }
        EXPECT_NEAR(static_cast<double>(left), static_cast<double>(code.rows[0].size() - 1 - right),
                    4);
    }
}

TEST(CodeText, TurnsWithTheBars) {
    const auto upright = withText(CodeKind::kEan13, "400638133393", 2);
    EXPECT_EQ(withText(CodeKind::kEan13, "400638133393", 2, 3).rows, turned(upright.rows, 3));
}

TEST(CodeText, LeavesControlCharactersOut) {
    const auto code = withText(CodeKind::kCode128, "A\tB", 2);
    EXPECT_TRUE(hasInk(code.rows, 0, 60, code.rows[0].size(), code.rows.size() - 60));
    const auto blank = withText(CodeKind::kCode128, "\t\n", 2);
    EXPECT_FALSE(hasInk(blank.rows, 0, 60, blank.rows[0].size(), blank.rows.size() - 60));
}

}  // namespace
}  // namespace tavio::printing
