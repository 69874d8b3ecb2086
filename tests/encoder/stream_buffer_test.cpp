#include "TavioIpadSDK/encoder/stream_buffer.h"

#include <gtest/gtest.h>

#include "support/bitmaps.h"

namespace tavio::encoder {
namespace {

TEST(StreamBuffer, RefusesOneByteTooMany) {
    StreamBuffer buffer(5);
    buffer.append("abc");
    EXPECT_THROW(buffer.append("def"), StreamTooLong);
    buffer.append(test::bytesOf("de"));
    EXPECT_THROW(buffer.append(test::bytesOf("f")), StreamTooLong);
    EXPECT_EQ(test::readable(buffer.take()), "abcde");
}

TEST(StreamBuffer, TakesWhatASigned32BitCountCanTell) {
    EXPECT_EQ(kMostStreamBytes, 2147483647U);
}

TEST(Commands, AreDecimalWithoutPaddingAndWithAMinusSign) {
    EXPECT_EQ(positionCommand(INT32_MIN, 7), "<RC-2147483648,7>");
    EXPECT_EQ(graphicsCommand(134217728), "<G134217728>");
}

}  // namespace
}  // namespace tavio::encoder
