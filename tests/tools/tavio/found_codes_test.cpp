// Finding codes on tickets.

#include "tools/tavio/found_codes.h"

#include <cmath>
#include <filesystem>

#include <gtest/gtest.h>

#include "TavioIpadSDK/helper/find_helper.h"
#include "sharp/sample_codes.h"
#include "tools/tavio/process.h"

namespace tavio::tool {
namespace {

using test::TextPicture;

platform::Picture whiteTicket(std::int32_t width, std::int32_t height) {
    platform::Picture picture;
    picture.width = width;
    picture.height = height;
    picture.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                          0xFFFFFFFFU);
    return picture;
}

// The dot at which a module begins.
std::int32_t edge(std::int32_t start, double module, std::size_t index) {
    return start + static_cast<std::int32_t>(std::lround(module * static_cast<double>(index)));
}

void draw(const TextPicture& code, std::int32_t left, std::int32_t top, double module,
          platform::Picture& ticket) {
    for (std::size_t row = 0; row < code.size(); ++row) {
        for (std::size_t column = 0; column < code.front().size(); ++column) {
            if (code[row][column] != '#') continue;
            for (auto y = edge(top, module, row); y < edge(top, module, row + 1); ++y) {
                for (auto x = edge(left, module, column); x < edge(left, module, column + 1); ++x) {
                    ticket.pixels[static_cast<std::size_t>(std::int64_t{y} * ticket.width + x)] =
                        0xFF000000U;
                }
            }
        }
    }
}

TextPicture barsOf(const std::string& text) {
    return TextPicture(20, test::code128(text));
}

class FoundCodes : public testing::Test {
  protected:
    void SetUp() override {
        if (helper::findHelper("tavio-scan").empty()) GTEST_SKIP() << "no scanner library here";
    }

    static std::vector<FoundCode> codesOn(const platform::Picture& ticket) {
        const CodeSearch search = findCodes(ticket);
        EXPECT_EQ(search.whyNot, "");
        return search.codes.value_or(std::vector<FoundCode>{});
    }

    static void expectCode(const FoundCode& code, const char* kind, std::int32_t left,
                           std::int32_t top, std::int32_t width, std::int32_t height) {
        EXPECT_EQ(code.kind, kind);
        EXPECT_EQ(code.left, left);
        EXPECT_EQ(code.top, top);
        EXPECT_EQ(code.width, width);
        EXPECT_EQ(code.height, height);
    }
};

TEST_F(FoundCodes, AreAllThatATicketHas) {
    platform::Picture ticket = whiteTicket(1200, 500);
    draw(test::kSmallQr, 50, 60, 4, ticket);
    draw(test::kSmallDataMatrix, 700, 61, 5, ticket);
    draw(barsOf("4711-08"), 300, 300, 3, ticket);
    const auto codes = codesOn(ticket);
    ASSERT_EQ(codes.size(), 3U);
    expectCode(codes[0], "qr", 50, 60, 84, 84);
    EXPECT_EQ(codes[0].data, "ROW F 12");
    EXPECT_EQ(codes[0].module, 4);
    const auto side = static_cast<std::int32_t>(test::kSmallDataMatrix.size());
    expectCode(codes[1], "datamatrix", 700, 61, 5 * side, 5 * side);
    EXPECT_EQ(codes[1].module, 5);
    const auto modules = static_cast<std::int32_t>(test::code128("4711-08").size());
    expectCode(codes[2], "code128", 300, 300, 3 * modules, 60);
    EXPECT_EQ(codes[2].data, "4711-08");
    EXPECT_EQ(codes[2].module, 3);
}

TEST_F(FoundCodes, AreSafeFromThreeDotsUp) {
    for (const double module : {2.0, 2.5, 3.0, 3.4, 6.0}) {
        SCOPED_TRACE(module);
        platform::Picture ticket = whiteTicket(600, 400);
        draw(test::kLargeQr, 100, 50, module, ticket);
        const auto codes = codesOn(ticket);
        ASSERT_EQ(codes.size(), 1U);
        EXPECT_NEAR(codes[0].module, module, 0.05);
        EXPECT_EQ(codes[0].isSafe(), module >= 3);
    }
}

TEST_F(FoundCodes, MayLieBesideEachOtherWithTheSameData) {
    platform::Picture ticket = whiteTicket(600, 200);
    draw(test::kSmallDataMatrix, 20, 20, 4, ticket);
    draw(test::kSmallDataMatrix, 320, 20, 4, ticket);
    EXPECT_EQ(codesOn(ticket).size(), 2U);
}

TEST_F(FoundCodes, AreNoneOnAWhiteTicket) {
    EXPECT_TRUE(codesOn(whiteTicket(600, 200)).empty());
    EXPECT_TRUE(codesOn(whiteTicket(1, 1)).empty());
}

TEST(CodeSearches, TellWhyThereIsNone) {
    const CodeSearch missing = findCodes(whiteTicket(8, 8), "/nowhere/tavio-scan");
    EXPECT_FALSE(missing.codes.has_value());
    EXPECT_EQ(missing.whyNot, "the program tavio-scan, which finds them, is not installed");
    const CodeSearch other = findCodes(whiteTicket(8, 8), "/bin/true");
    EXPECT_FALSE(other.codes.has_value());
    EXPECT_EQ(other.whyNot, "the program tavio-scan, which finds them, has failed");
}

TEST(CodeAnswers, AreLinesWithTheirData) {
    const auto codes = parseCodes(
        "ean13 5 60 380 200 400 13\n5012345678900\nqr 1 2 21 21 275 3\na\nb\naztec 0 2 1 1 0 "
        "0\n\n");
    ASSERT_TRUE(codes.has_value());
    ASSERT_EQ(codes->size(), 3U);
    EXPECT_EQ((*codes)[0].kind, "aztec") << "from the top, then from the left";
    EXPECT_EQ((*codes)[0].data, "");
    EXPECT_EQ((*codes)[1].data, "a\nb");
    EXPECT_EQ((*codes)[1].module, 2.75);
    EXPECT_FALSE((*codes)[1].isSafe());
    EXPECT_EQ((*codes)[2].left, 5);
    EXPECT_EQ((*codes)[2].top, 60);
    EXPECT_EQ((*codes)[2].width, 380);
    EXPECT_EQ((*codes)[2].height, 200);
    EXPECT_TRUE((*codes)[2].isSafe());
    EXPECT_TRUE(parseCodes("")->empty());
}

TEST(CodeAnswers, ThatAreMalformedAreNone) {
    for (const char* answer :
         {"qr", "qr 1 2 3 4 5\n", "qr 1 2 3 4 5 0", "qr 1 2 3 4 5 0\n", "qr 1 2 3 4 5 3\nab\n",
          "qr 1 2 3 4 5 1\nab\n", "qr 1 2 3 4 5 -1\na\n", "qr 1 2 3 4 5 1 6\na\n",
          "qr x 2 3 4 5 1\na\n", "qr 1 2 3 4 5 99999999999\na\n", "qr 1 2 3 4 5 1\na\n\n"}) {
        EXPECT_FALSE(parseCodes(answer).has_value()) << answer;
    }
}

// A picture file of the ticket through the whole program.
class CodesOfDocuments : public test::ToolTest {
  protected:
    void SetUp() override {
        if (helper::findHelper("tavio-scan").empty()) GTEST_SKIP() << "no scanner library here";
    }

    void writePbmAsBmp(const std::string& name, const platform::Picture& ticket) const {
        std::string head("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0", 18);
        for (const std::int32_t side : {ticket.width, ticket.height}) {
            for (int shift = 0; shift < 32; shift += 8)
                head += static_cast<char>(side >> shift & 255);
        }
        head += std::string("\1\0\x20\0", 4) + std::string(24, '\0');
        std::string pixels;
        for (std::int32_t row = ticket.height; row-- > 0;) {
            for (std::int32_t column = 0; column < ticket.width; ++column) {
                const auto pixel = ticket.pixels[static_cast<std::size_t>(
                    std::int64_t{row} * ticket.width + column)];
                pixels += std::string(3, static_cast<char>(pixel & 255)) + '\0';
            }
        }
        test::writeFile(at(name), head + pixels);
    }
};

TEST_F(CodesOfDocuments, AreToldWithTheirModules) {
    platform::Picture picture = whiteTicket(300, 200);
    draw(test::kSmallQr, 50, 60, 2, picture);
    writePbmAsBmp("qr.bmp", picture);
    const test::Ran ran = tavio({"info", "qr.bmp", "--row", "10", "--column", "20"});
    EXPECT_NE(
        ran.out.find("code: qr \"ROW F 12\", 42 x 42 dots from 70, 70, modules of 2 dots: too "
                     "small to be safe\n"),
        std::string::npos)
        << ran.out;
    const test::Ran larger = tavio({"info", "qr.bmp", "--resolution", "600", "--fit", "contain"});
    EXPECT_NE(larger.out.find("modules of 12 dots: safe\n"), std::string::npos) << larger.out;
    const test::Ran json = tavio({"info", "qr.bmp", "--json"});
    EXPECT_NE(
        json.out.find(R"("codes":[{"kind":"qr","data":"ROW F 12","place":{"left":50,"top":60},)"
                      R"("size":{"width":42,"height":42},"module":2,"isSafe":false}])"),
        std::string::npos)
        << json.out;
}

TEST_F(CodesOfDocuments, AreThoseOfThePrintedPart) {
    platform::Picture picture = whiteTicket(300, 200);
    draw(test::kSmallQr, 50, 60, 4, picture);
    writePbmAsBmp("qr.bmp", picture);
    const test::Ran ran = tavio({"info", "qr.bmp", "--fit", "actual", "--column", "1550"});
    EXPECT_NE(ran.out.find("codes: none\n"), std::string::npos) << ran.out;
}

TEST_F(CodesOfDocuments, AreNotLookedForInTexts) {
    test::writeFile(at("a.txt"), "Row F");
    EXPECT_EQ(tavio({"info", "a.txt"}).out.find("codes"), std::string::npos);
}

}  // namespace
}  // namespace tavio::tool
