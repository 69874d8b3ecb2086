// Parts of the tool on their own.

#include <stdexcept>

#include <gtest/gtest.h>

#include "tools/tavio/extension.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/option_values.h"
#include "tools/tavio/options.h"

namespace tavio::tool {
namespace {

TEST(Numbers, AreDecimalOf32Bits) {
    EXPECT_EQ(parseNumber("-2147483648"), INT32_MIN);
    EXPECT_EQ(parseNumber("+2147483647"), INT32_MAX);
    EXPECT_EQ(parseNumber("010"), 10);
    for (std::string_view text :
         {"", "-", "+", "+-1", "--1", "1 ", " 1", "0x1", "1.0", "2147483648"}) {
        EXPECT_FALSE(parseNumber(text).has_value()) << text;
    }
}

TEST(Seconds, AreMoreThanNoneAndUpToADay) {
    using std::chrono::milliseconds;
    EXPECT_EQ(parseSeconds("1"), milliseconds(1000));
    EXPECT_EQ(parseSeconds("2.5"), milliseconds(2500));
    EXPECT_EQ(parseSeconds(".25"), milliseconds(250));
    EXPECT_EQ(parseSeconds("007"), milliseconds(7000));
    EXPECT_EQ(parseSeconds("0.0001"), milliseconds(1)) << "rounded up";
    EXPECT_EQ(parseSeconds("86400"), milliseconds(86'400'000));
    for (std::string_view text :
         {"", "0", "0.0", "-1", "+1", "86400.001", "1e3", "0x1", "1,5", "1.2.3", ".", "inf", "nan",
          " 1", "1 ", "1s", "99999999999999999999"}) {
        EXPECT_FALSE(parseSeconds(text).has_value()) << text;
    }
}

TEST(Deadlines, AreTheLinksOwnUnlessTheCommandLineSaysOtherwise) {
    using std::chrono::milliseconds;
    const links::Deadlines usual;
    Options options;
    EXPECT_EQ(deadlinesOf(options).progress, usual.progress);
    EXPECT_EQ(deadlinesOf(options).connect, usual.connect);
    options.timeout = milliseconds(100);
    for (milliseconds each :
         {deadlinesOf(options).progress, deadlinesOf(options).connect, deadlinesOf(options).reply,
          deadlinesOf(options).silence, deadlinesOf(options).goodbye}) {
        EXPECT_EQ(each, milliseconds(100));
    }
    options.timeout = milliseconds(600'000);
    EXPECT_EQ(deadlinesOf(options).progress, milliseconds(600'000));
    EXPECT_EQ(deadlinesOf(options).connect, usual.connect);
    EXPECT_EQ(deadlinesOf(options).reply, usual.reply);
    EXPECT_EQ(deadlinesOf(options).silence, usual.silence);
    EXPECT_EQ(deadlinesOf(options).goodbye, usual.goodbye);
}

TEST(DocumentKinds, AreTheSupportedSpellings) {
    for (std::string_view extension : {"TXT", "txt"}) {
        EXPECT_EQ(documentKind("x", extension, Use::kPrint), DocumentKind::kText);
        EXPECT_THROW(documentKind("x", extension, Use::kLogo), Failure);
    }
    for (Use use : {Use::kPrint, Use::kLogo}) {
        for (std::string_view extension : {"PDF", "pdf"}) {
            EXPECT_EQ(documentKind("x", extension, use), DocumentKind::kPdf);
        }
        for (std::string_view extension :
             {"PNG", "png", "JPG", "jpg", "JPEG", "jpeg", "BMP", "bmp"}) {
            EXPECT_EQ(documentKind("x", extension, use), DocumentKind::kPicture);
        }
        for (std::string_view extension : {"", "Txt", "pDF", "Png", "jPEG", "gif", "txt "}) {
            EXPECT_THROW(documentKind("x", extension, use), Failure) << extension;
        }
    }
}

}  // namespace
}  // namespace tavio::tool
