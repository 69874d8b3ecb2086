#include "TavioIpadSDK/encoder/command_text.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

TEST(StretchCommands, AreThePositionAndTheGraphicsCommandWhateverWasWrittenBefore) {
    const std::array<std::int32_t, 16> numbers = {0,   1,    9,     10,        99,        100,
                                                  999, 1000, 12345, 999999999, INT32_MAX, INT32_MIN,
                                                  -1,  -10,  -999,  576};
    test::Random random(20261121);
    StretchCommands commands;
    for (int i = 0; i < 20000; ++i) {
        // Few different numbers, so that many come again.
        const int different = test::chance(random, 50) ? 2 : 16;
        const auto pick = [&] {
            return numbers.at(static_cast<std::size_t>(test::between(random, 1, different) - 1));
        };
        const std::int32_t row = pick(), column = pick(), columns = pick();
        std::array<Byte, StretchCommands::kRoom> text;
        const Byte* const end = commands.write(row, column, columns, text.data());
        ASSERT_EQ(std::string(static_cast<const Byte*>(text.data()), end),
                  positionCommand(row, column) + graphicsCommand(columns));
        ASSERT_EQ(static_cast<std::size_t>(end - text.data()),
                  StretchCommands::size(row, column, columns));
    }
}

}  // namespace
}  // namespace tavio::encoder
