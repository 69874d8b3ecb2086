#include "TavioIpadSDK/intake/routes.h"

#include <string>

#include <gtest/gtest.h>

namespace tavio::intake {
namespace {

TEST(Routes, AreThoseOfTheAllCapitalAndAllSmallSpellings) {
    for (const char* extension : {"TXT", "txt"}) EXPECT_EQ(routeOf(extension), Route::kText);
    for (const char* extension : {"PDF", "pdf"}) EXPECT_EQ(routeOf(extension), Route::kPage);
    for (const char* extension : {"PNG", "png", "JPG", "jpg", "JPEG", "jpeg", "BMP", "bmp"})
        EXPECT_EQ(routeOf(extension), Route::kPhoto) << extension;
}

// Every way to write each extension in capital and small letters.
TEST(Routes, RefuseEveryMixedSpellingOnPurpose) {
    for (const std::string whole : {"txt", "pdf", "png", "jpg", "jpeg", "bmp"}) {
        const unsigned all = (1U << whole.size()) - 1;
        for (unsigned capitals = 1; capitals < all; ++capitals) {
            std::string mixed = whole;
            for (std::size_t i = 0; i < whole.size(); ++i)
                if ((capitals >> i & 1) != 0) mixed[i] = static_cast<char>(mixed[i] - 'a' + 'A');
            EXPECT_EQ(routeOf(mixed), Route::kNone) << mixed;
        }
    }
}

TEST(Routes, RefuseEverythingElse) {
    for (const std::string& extension :
         {std::string(), std::string("gif"), std::string("tx"), std::string("txtt"),
          std::string(".txt"), std::string("txt "), std::string(" txt"), std::string("text"),
          std::string("txt\0", 4), std::string("tiff"), std::string("JPE"),
          std::string("\xC3\xA9")})
        EXPECT_EQ(routeOf(extension), Route::kNone) << extension;
}

}  // namespace
}  // namespace tavio::intake
