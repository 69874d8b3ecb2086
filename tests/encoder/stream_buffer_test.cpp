#include "TavioIpadSDK/encoder/stream_buffer.h"

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "support/bitmaps.h"

namespace tavio::encoder {
namespace {

using test::bytesOf;
using test::readable;

TEST(StreamBuffer, RefusesOneByteTooMany) {
    StreamSize size(5);
    size.add(3);
    EXPECT_THROW(size.add(3), StreamTooLong);
    size.add(2);
    EXPECT_THROW(size.add(1), StreamTooLong);
    EXPECT_EQ(size.sum(), 5U);
    StreamBuffer buffer(5);
    buffer.append(bytesOf("abcde"));
    EXPECT_TRUE(buffer.keptAll());
    buffer.append(bytesOf("f"));
    EXPECT_FALSE(buffer.keptAll());
    EXPECT_EQ(readable(buffer.release()), "abcde");
}

TEST(StreamBuffer, TakesWhatASigned32BitCountCanTell) {
    EXPECT_EQ(kMaxStreamBytes, 2147483647U);
    StreamSize size;
    size.add(2147483647U);
    EXPECT_THROW(size.add(1), StreamTooLong);
    EXPECT_THROW(StreamSize().add(UINT64_MAX), StreamTooLong);
}

// Bytes that do not fit are only counted; the buffer does not change any more.
TEST(StreamBuffer, CountsOnWhereItHasNoRoomLeft) {
    StreamBuffer buffer(4);
    StreamSize size(10);
    const auto append = [&](std::string_view text) {
        buffer.append(bytesOf(text));
        size.add(text.size());
    };
    append("abc");
    EXPECT_TRUE(buffer.keptAll());
    EXPECT_EQ(buffer.next(2), nullptr);
    append("de");
    EXPECT_FALSE(buffer.keptAll());
    append("f");  // does not slip in after "abc"
    EXPECT_EQ(buffer.next(1), nullptr);
    EXPECT_EQ(size.sum(), 6U);
    EXPECT_THROW(append("ghijk"), StreamTooLong);
    EXPECT_EQ(size.sum(), 6U);
    EXPECT_EQ(readable(buffer.release()), "abc");
}

TEST(StreamBuffer, IsWrittenInPlaceWhereThereIsRoom) {
    StreamBuffer buffer(8);
    buffer.append(bytesOf("ab"));
    Byte* const to = buffer.next(6);
    ASSERT_NE(to, nullptr);
    EXPECT_EQ(buffer.next(7), nullptr);
    to[0] = 'c';
    EXPECT_EQ(buffer.next(6), to);  // not taken yet
    buffer.takeWritten(1);
    EXPECT_EQ(buffer.next(5), to + 1);
    EXPECT_EQ(readable(buffer.release()), "abc");
    EXPECT_EQ(buffer.next(1), nullptr);
}

TEST(Commands, AreDecimalWithoutPaddingAndWithAMinusSign) {
    EXPECT_EQ(positionCommand(INT32_MIN, 7), "<RC-2147483648,7>");
    EXPECT_EQ(graphicsCommand(134217728), "<G134217728>");
}

}  // namespace
}  // namespace tavio::encoder
