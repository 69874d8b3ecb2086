// Parts of the tool on their own.

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "tavio/extension.h"
#include "tavio/failure.h"
#include "tavio/options.h"
#include "tavio/preview_link.h"
#include "tavio/target.h"
#include "tavio/ticket_fit.h"

namespace tavio::tool {
namespace {

TEST(Target, IsAPictureAFileOrAPrinter) {
    auto kindOf = [](std::string_view text) { return parseTarget(text).value().kind; };
    EXPECT_EQ(kindOf("ticket.png"), Target::Kind::kPreview);
    EXPECT_EQ(kindOf("a/b.PNG"), Target::Kind::kPreview);
    EXPECT_EQ(kindOf("file:job.bin"), Target::Kind::kFile);
    EXPECT_EQ(kindOf("file:ticket.png"), Target::Kind::kFile);
    EXPECT_EQ(kindOf("tcp://192.0.2.7:9100"), Target::Kind::kPrinter);
    EXPECT_EQ(kindOf("bt://00:11:22:33:44:55/1"), Target::Kind::kPrinter);
    EXPECT_EQ(kindOf("tty:/dev/ttyS0"), Target::Kind::kPrinter);
    EXPECT_EQ(parseTarget("file:/dev/stdout")->name, "/dev/stdout");
}

TEST(Target, IsNothingElse) {
    for (std::string_view text :
         {"", "file:", "job.bin", "ticket.png ", "http://x", "file", "png"}) {
        EXPECT_FALSE(parseTarget(text).has_value()) << text;
    }
}

TEST(Target, IsAPictureByItsLastLetters) {
    EXPECT_TRUE(isPictureName("a/ticket.png"));
    EXPECT_TRUE(isPictureName("TICKET.PNG"));
    for (std::string_view name : {"", "png", "ticket.jpg", "ticket.png ", "ticket.Png"}) {
        EXPECT_FALSE(isPictureName(name)) << name;
    }
}

TEST(Numbers, AreDecimalOf32Bits) {
    EXPECT_EQ(parseNumber("-2147483648"), INT32_MIN);
    EXPECT_EQ(parseNumber("+2147483647"), INT32_MAX);
    EXPECT_EQ(parseNumber("010"), 10);
    for (std::string_view text :
         {"", "-", "+", "+-1", "--1", "1 ", " 1", "0x1", "1.0", "2147483648"}) {
        EXPECT_FALSE(parseNumber(text).has_value()) << text;
    }
}

TEST(Stocks, AreNamedByIndexOrName) {
    EXPECT_EQ(parseStock("0"), 0);
    EXPECT_EQ(parseStock("8"), 8);
    EXPECT_EQ(parseStock("Concert"), 0);
    EXPECT_EQ(parseStock("CINEMA"), 1);
    EXPECT_EQ(parseStock("creditcard"), 2);
    EXPECT_EQ(parseStock("receipt"), 3);
    for (std::string_view text : {"", "9", "-1", "00", "cine"}) {
        EXPECT_FALSE(parseStock(text).has_value()) << text;
    }
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

TEST(TicketNames, HaveTheirNumberBeforeTheExtension) {
    EXPECT_EQ(ticketName("ticket.png", 1), "ticket.png");
    EXPECT_EQ(ticketName("ticket.png", 2), "ticket-2.png");
    EXPECT_EQ(ticketName("a.b/ticket.png", 10), "a.b/ticket-10.png");
    EXPECT_EQ(ticketName("a.b/ticket", 2), "a.b/ticket-2");
    EXPECT_EQ(ticketName("a/.png", 2), "a/.png-2");
}

Settings settingsOf(std::int32_t stock, std::int32_t resolution, bool portrait) {
    Settings settings;
    settings.stock = stock;
    settings.resolution = resolution;
    settings.portrait = portrait;
    return settings;
}

TEST(TicketFit, KnowsTheTicketsInDots) {
    EXPECT_EQ(ticketDots(settingsOf(0, 300, false)), (intake::DotSize{1650, 600}));
    EXPECT_EQ(ticketDots(settingsOf(1, 200, false)), (intake::DotSize{400, 650}));
    EXPECT_EQ(ticketDots(settingsOf(0, 300, true)), (intake::DotSize{576, 1650}));
    EXPECT_EQ(ticketDots(settingsOf(8, 600, true)), (intake::DotSize{5000, 6600}));
    EXPECT_EQ(ticketDots(settingsOf(6, 200, true)), (intake::DotSize{190, 2200}));
}

std::size_t warningCount(intake::DotSize size, std::int32_t row, std::int32_t column,
                         bool portrait) {
    return fitWarnings(size, Use::kPrint, row, column, settingsOf(0, 300, portrait)).size();
}

TEST(TicketFit, EndsAtTheTicketsEdges) {
    EXPECT_EQ(warningCount({1650, 600}, 0, 0, false), 0U);
    EXPECT_EQ(warningCount({1650, 599}, 1, 0, false), 0U);
    EXPECT_EQ(warningCount({1650, 600}, 1, 0, false), 1U);
    EXPECT_EQ(warningCount({1640, 600}, 0, 10, false), 0U);
    EXPECT_EQ(warningCount({1640, 600}, 0, 11, false), 1U);
    EXPECT_EQ(warningCount({8, 8}, -1, 0, false), 1U);
    EXPECT_EQ(warningCount({8, 8}, 0, -1, false), 1U);
    EXPECT_EQ(warningCount({8, 8}, INT32_MAX, INT32_MAX, false), 1U);
    EXPECT_EQ(warningCount({INT32_MAX, INT32_MAX}, INT32_MIN, INT32_MIN, false), 1U);
}

TEST(TicketFit, MeasuresRowsAcrossTheTicketInPortrait) {
    EXPECT_EQ(warningCount({576, 1650}, 0, 0, true), 0U);
    EXPECT_EQ(warningCount({500, 1600}, 76, 50, true), 0U);
    EXPECT_EQ(warningCount({500, 1600}, 77, 50, true), 1U);
    EXPECT_EQ(warningCount({500, 1600}, 76, 51, true), 1U);
    EXPECT_EQ(warningCount({577, 8}, 0, 0, true), 1U);
}

TEST(TicketFit, SaysNothingOfAnEmptyPicture) {
    EXPECT_EQ(warningCount({0, 0}, 0, 0, false), 0U);
    EXPECT_EQ(warningCount({100, 0}, 0, 0, false), 0U);
}

std::span<const Byte> bytesOf(std::string_view text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

TEST(PreviewLink, WritesNothingBeforeItIsCommitted) {
    test::TemporaryFolder folder;
    {
        PreviewLink link(folder / "ticket.png", {});
        ASSERT_TRUE(link.open(""));
        EXPECT_TRUE(link.write(bytesOf("A<p>B<p>")));
        link.close();
        EXPECT_EQ(link.ticketCount(), 2U);
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(PreviewLink, DropsBytesWhileItIsNotOpen) {
    test::TemporaryFolder folder;
    PreviewLink link(folder / "ticket.png", {});
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    ASSERT_TRUE(link.open(""));
    link.close();
    link.close();
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    EXPECT_EQ(link.ticketCount(), 1U) << "the blank one of an empty stream";
    EXPECT_TRUE(link.commit());
    EXPECT_EQ(folder.names(), std::set<std::string>{"ticket.png"});
}

TEST(PreviewLink, TellsWhyALaterTicketCannotBeWritten) {
    test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "ticket-2.png");
    PreviewLink link(folder / "ticket.png", {});
    ASSERT_TRUE(link.open(""));
    EXPECT_FALSE(link.write(bytesOf("<p><p>")));
    link.close();
    EXPECT_FALSE(link.commit());
    EXPECT_EQ(link.failure(), (folder / "ticket-2.png") + " cannot be written: Is a directory");
}

}  // namespace
}  // namespace tavio::tool
