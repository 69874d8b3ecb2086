#include "TavioIpadSDK/encoder/stream_buffer.h"

#include <gtest/gtest.h>

#include "support/bitmaps.h"

namespace tavio::encoder {
namespace {

TEST(StreamBuffer, RefusesOneByteTooMany) {
    StreamBuffer buffer(5, 5);
    buffer.append("abc");
    EXPECT_THROW(buffer.append("def"), StreamTooLong);
    buffer.append(test::bytesOf("de"));
    EXPECT_THROW(buffer.append(test::bytesOf("f")), StreamTooLong);
    EXPECT_EQ(test::readable(buffer.release()), "abcde");
}

TEST(StreamBuffer, TakesWhatASigned32BitCountCanTell) {
    EXPECT_EQ(kMostStreamBytes, 2147483647U);
}

TEST(StreamBuffer, CountsOnWhereItHasNoRoomLeft) {
    StreamBuffer buffer(4, 10);
    buffer.append("abc");
    EXPECT_TRUE(buffer.keptAll());
    EXPECT_EQ(buffer.next(2), nullptr);
    buffer.append("de");
    EXPECT_FALSE(buffer.keptAll());
    buffer.append("f");  // does not slip in behind "abc"
    EXPECT_EQ(buffer.size(), 6U);
    EXPECT_THROW(buffer.append("ghijk"), StreamTooLong);
    EXPECT_EQ(buffer.size(), 6U);
}

TEST(StreamBuffer, IsWrittenInPlaceWhereThereIsRoom) {
    StreamBuffer buffer(8);
    buffer.append("ab");
    Byte* const to = buffer.next(6);
    ASSERT_NE(to, nullptr);
    EXPECT_EQ(buffer.next(7), nullptr);
    to[0] = 'c';
    EXPECT_EQ(buffer.size(), 2U);
    buffer.takeWritten(1);
    EXPECT_EQ(test::readable(buffer.release()), "abc");
    EXPECT_EQ(buffer.size(), 0U);
    EXPECT_EQ(buffer.next(1), nullptr);
}

TEST(Commands, AreDecimalWithoutPaddingAndWithAMinusSign) {
    EXPECT_EQ(positionCommand(INT32_MIN, 7), "<RC-2147483648,7>");
    EXPECT_EQ(graphicsCommand(134217728), "<G134217728>");
}

}  // namespace
}  // namespace tavio::encoder
