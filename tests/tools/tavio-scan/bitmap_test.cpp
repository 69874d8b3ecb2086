// Reading pictures in dots.

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tools/tavio-scan/text_bitmap.h"

namespace tavio::scan {
namespace {

std::optional<Bitmap> read(std::string_view file) {
    return readBitmap({reinterpret_cast<const Byte*>(file.data()), file.size()});
}

TEST(Bitmaps, AreReadRowByRow) {
    const auto bitmap = read("P4\n10 2\n\xA0\x40\x01\x80");
    ASSERT_TRUE(bitmap.has_value());
    EXPECT_EQ(bitmap->width, 10);
    EXPECT_EQ(bitmap->height, 2);
    EXPECT_EQ(bitmap->dots, bitmapOf({"#.#......#", ".......##."}).dots);
}

TEST(Bitmaps, MustBeWhole) {
    using namespace std::string_view_literals;
    for (const std::string_view file :
         {""sv, "P4"sv, "P4\n"sv, "P1\n8 1\n\xFF"sv, "P4\n8"sv, "P4\n8 1"sv, "P4\n8 1\n"sv,
          "P4\n8 1\n\xFF\xFF"sv, "P4\n0 1\n"sv, "P4\n8 0\n"sv, "P4\n-8 1\n\xFF"sv,
          "P4\nx 1\n\xFF"sv, "P4\n32769 1\n"sv, "P4\n99999999999 1\n"sv}) {
        EXPECT_FALSE(read(file).has_value()) << file;
    }
    std::string widest = "P4\n32768 1\n";
    widest.append(4096, '\0');
    EXPECT_TRUE(read(widest).has_value());
}

}  // namespace
}  // namespace tavio::scan
