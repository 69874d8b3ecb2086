#include "tavio/preview/preview_link.h"

#include <stdexcept>
#include <string_view>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tavio::links {
namespace {

std::span<const Byte> bytesOf(std::string_view text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// Small tickets, which are drawn and written soon.
virtual_printer::PrinterSettings smallTickets() {
    virtual_printer::PrinterSettings settings;
    settings.size = {.rows = 40, .columns = 60, .dpi = 100};
    return settings;
}

class PreviewLinkTest : public testing::Test {
  protected:
    bool print(std::string_view job) {
        bool good = link.open("") && link.write(bytesOf(job));
        link.close();
        return good;
    }

    test::TemporaryFolder folder;
    PreviewLink link{folder / "ticket.png", smallTickets()};
};

TEST_F(PreviewLinkTest, WritesNothingBeforeItIsCommitted) {
    {
        PreviewLink dropped(folder / "ticket.png", smallTickets());
        ASSERT_TRUE(dropped.open(""));
        EXPECT_TRUE(dropped.write(bytesOf("A<p>B<p>")));
        dropped.close();
        EXPECT_EQ(dropped.ticketCount(), 2U);
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(PreviewLinkTest, DropsBytesWhileItIsNotOpen) {
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    ASSERT_TRUE(link.open(""));
    link.close();
    link.close();
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    EXPECT_EQ(link.ticketCount(), 1U) << "the blank one of an empty stream";
    EXPECT_TRUE(link.commit());
    EXPECT_EQ(folder.names(), std::set<std::string>{"ticket.png"});
}

TEST_F(PreviewLinkTest, ReportsWhatItHasDrawn) {
    std::uint64_t seen = 0;
    link.observeProgress([&seen](const Progress& progress) { seen = progress.accepted; });
    EXPECT_TRUE(print("<RC1,1>A<p>"));
    EXPECT_TRUE(link.drain());
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_EQ(seen, 11U);
    EXPECT_EQ(link.report().offered, 11U);
    EXPECT_EQ(link.report().accepted, 11U);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
    EXPECT_EQ(link.problems().count(), 0U);
}

TEST_F(PreviewLinkTest, CountsOnThroughJobsUntilItIsCommitted) {
    EXPECT_TRUE(print("<RC1,1>A<p>"));
    EXPECT_TRUE(print("<RC1,1>B<p><XX9>"));
    EXPECT_EQ(link.ticketCount(), 2U);
    EXPECT_EQ(link.problems().count(), 1U);
    ASSERT_TRUE(link.commit());
    EXPECT_EQ(folder.names(), (std::set<std::string>{"ticket.png", "ticket-2.png"}));

    const std::string second = test::readFile(folder / "ticket-2.png");
    EXPECT_TRUE(print("<RC1,1>B<p>"));
    EXPECT_EQ(link.ticketCount(), 1U);
    EXPECT_EQ(link.problems().count(), 0U) << "those of the last job only";
    EXPECT_NE(test::readFile(folder / "ticket.png"), second) << "not committed";
    ASSERT_TRUE(link.commit());
    EXPECT_EQ(test::readFile(folder / "ticket.png"), second);
    EXPECT_TRUE(link.commit()) << "once more changes nothing";
}

TEST_F(PreviewLinkTest, HasNothingToCommitBeforeTheFirstJob) {
    EXPECT_FALSE(link.commit());
    EXPECT_EQ(link.failure(), "there has been no job to draw");
    EXPECT_TRUE(print("<p>"));
    EXPECT_TRUE(link.commit());
}

TEST_F(PreviewLinkTest, TellsWhyALaterTicketCannotBeWritten) {
    std::filesystem::create_directory(folder / "ticket-2.png");
    EXPECT_FALSE(print("<p><p>"));
    const std::string why = (folder / "ticket-2.png") + " cannot be written: Is a directory";
    EXPECT_EQ(link.failure(), why);
    EXPECT_FALSE(link.commit());
    EXPECT_FALSE(print("<p>")) << "after a failure nothing can be committed";
    EXPECT_EQ(link.failure(), why);
    EXPECT_FALSE(link.commit());
    EXPECT_EQ(folder.names(), std::set<std::string>{"ticket-2.png"});
}

TEST_F(PreviewLinkTest, CommitsNothingOfACancelledJob) {
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(bytesOf("<p>")));
    link.cancel();
    EXPECT_FALSE(link.write(bytesOf("<p>")));
    link.close();
    EXPECT_FALSE(link.commit());
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(PreviewLinkTest, RefusesTicketsThatCannotBe) {
    EXPECT_THROW(PreviewLink("ticket.png", {}), std::invalid_argument);
}

TEST(TicketNames, HaveTheirNumberBeforeTheExtension) {
    EXPECT_EQ(ticketName("ticket.png", 1), "ticket.png");
    EXPECT_EQ(ticketName("ticket.png", 2), "ticket-2.png");
    EXPECT_EQ(ticketName("a.b/ticket.png", 10), "a.b/ticket-10.png");
    EXPECT_EQ(ticketName("a.b/ticket", 2), "a.b/ticket-2");
    EXPECT_EQ(ticketName("a/.png", 2), "a/.png-2");
}

}  // namespace
}  // namespace tavio::links
