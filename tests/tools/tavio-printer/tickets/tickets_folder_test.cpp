#include <filesystem>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/rights.h"
#include "support/temporary_folder.h"
#include "tools/tavio-printer/tickets/page_tickets.h"
#include "tools/tavio-printer/tickets/ticket_folder.h"
#include "tools/tavio-printer/tickets/ticket_store.h"

namespace tavio::virtual_printer {
namespace {

using test::printed;
using Names = std::set<std::string>;

StoreLimits inFolder(const std::string& folder, std::size_t tickets = 100) {
    StoreLimits limits;
    limits.tickets = tickets;
    limits.folder = folder;
    return limits;
}

std::string textOf(const std::vector<Byte>& bytes) {
    return {bytes.begin(), bytes.end()};
}

// The message of the exception.
std::string refusal(const StoreLimits& limits) {
    try {
        TicketStore store(limits);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

TEST(TicketFolder, HoldsPictureAndBytesOfEachTicket) {
    const test::TemporaryFolder temporary;
    TicketStore store(inFolder(temporary / "deep/down"));
    EXPECT_EQ(store.add(printed("<P1><p>")), "");
    EXPECT_EQ(store.add(printed("second<q>")), "");
    const std::string folder = temporary / "deep/down/";
    EXPECT_EQ(test::readFile(folder + "ticket-000001.bin"), "<P1><p>");
    EXPECT_EQ(test::readFile(folder + "ticket-000002.bin"), "second<q>");
    EXPECT_EQ(test::readFile(folder + "ticket-000002.png"), textOf(store.find(2)->png));
}

TEST(TicketFolder, NumbersGoOnAfterEarlierRuns) {
    const test::TemporaryFolder folder;
    {
        TicketStore store(inFolder(folder.path()));
        store.add(printed("<p>"));
        store.add(printed("<p>"));
    }
    TicketStore store(inFolder(folder.path()));
    EXPECT_EQ(store.newest(), 0U);
    store.add(printed("third<p>"));
    EXPECT_EQ(store.newest(), 3U);
    EXPECT_EQ(store.oldest(), 3U);
    EXPECT_EQ(test::readFile(folder / "ticket-000003.bin"), "third<p>");
    EXPECT_EQ(folder.names().size(), 6U);
}

TEST(TicketFolder, TheOldestGoFirstThoseOfEarlierRunsIncluded) {
    const test::TemporaryFolder folder;
    for (int run = 0; run < 2; ++run) {
        TicketStore store(inFolder(folder.path(), 3));
        store.add(printed("<p>"));
        EXPECT_EQ(store.add(printed("<p>")), "");
    }
    EXPECT_EQ(folder.names(),
              (Names{"ticket-000002.bin", "ticket-000002.png", "ticket-000003.bin",
                     "ticket-000003.png", "ticket-000004.bin", "ticket-000004.png"}));
}

TEST(TicketFolder, KeepsWithinItsBytes) {
    const test::TemporaryFolder temporary;
    TicketFolder folder(temporary.path(), {100, 1000});
    const std::vector<Byte> content(300);
    EXPECT_EQ(folder.write(1, content, content), "");
    EXPECT_EQ(folder.write(2, content, {}), "");
    EXPECT_EQ(temporary.names().size(), 3U);
    EXPECT_EQ(folder.write(3, content, {}), "");
    EXPECT_EQ(temporary.names(), (Names{"ticket-000002.png", "ticket-000003.png"}));
    const std::vector<Byte> large(5000);
    EXPECT_EQ(folder.write(4, large, {}), "");
    EXPECT_EQ(temporary.names(), (Names{"ticket-000004.png"}));
}

TEST(TicketFolder, NumbersMayGrowBeyondSixDigits) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "ticket-1000000.png", "x");
    TicketStore store(inFolder(folder.path()));
    store.add(printed("<p>"));
    EXPECT_TRUE(std::filesystem::exists(folder / "ticket-1000001.png"));
}

TEST(TicketFolder, LeavesEverythingElseAlone) {
    const test::TemporaryFolder folder;
    const Names others = {"ticket-7.png",      "ticket-0000008.png",
                          "ticket-000009.txt", "ticket-00000a.png",
                          "ticket-000000.png", "notes",
                          "ticket-.png",       "ticket-99999999999999999999.png"};
    for (const std::string& name : others) test::writeFile(folder / name, "mine");
    std::filesystem::create_directory(folder / "ticket-000020.png");
    TicketStore store(inFolder(folder.path(), 1));
    store.add(printed("<p>"));
    store.add(printed("<p>"));
    EXPECT_EQ(store.newest(), 2U);
    for (const std::string& name : others) EXPECT_EQ(test::readFile(folder / name), "mine");
    EXPECT_FALSE(std::filesystem::exists(folder / "ticket-000001.png"));
}

TEST(TicketFolder, ClearsUpWhatARunLeftUnfinished) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "ticket-000005.png.unfinished", "half");
    test::writeFile(folder / "other.png.unfinished", "not ours");
    TicketStore store(inFolder(folder.path()));
    EXPECT_EQ(folder.names(), (Names{"other.png.unfinished"}));
    store.add(printed("<p>"));
    EXPECT_EQ(store.newest(), 1U);
}

TEST(TicketFolder, WhereFilesCannotBeWrittenTheTicketIsKeptAndTheReasonTold) {
    const test::TemporaryFolder temporary;
    TicketStore store(inFolder(temporary / "folder"));
    std::filesystem::remove_all(temporary / "folder");
    const std::string reason = store.add(printed("<p>"));
    EXPECT_NE(reason.find("cannot write"), std::string::npos) << reason;
    EXPECT_NE(reason.find("ticket-000001.png: No such file or directory"), std::string::npos)
        << reason;
    EXPECT_NE(store.find(1), nullptr);

    std::filesystem::create_directory(temporary / "folder");
    EXPECT_EQ(store.add(printed("<p>")), "");
    EXPECT_TRUE(std::filesystem::exists(temporary / "folder/ticket-000002.bin"));
}

TEST(TicketFolder, AFileThatIsInTheWayIsReportedAndNothingUnfinishedStays) {
    const test::TemporaryFolder folder;
    TicketStore store(inFolder(folder.path()));
    std::filesystem::create_directories(folder / "ticket-000001.png/full");
    const std::string reason = store.add(printed("<p>"));
    EXPECT_NE(reason.find("cannot write"), std::string::npos) << reason;
    EXPECT_FALSE(std::filesystem::exists(folder / "ticket-000001.png.unfinished"));
}

TEST(TicketFolder, FilesTakenAwayMeanwhileAreNoFailure) {
    const test::TemporaryFolder folder;
    TicketStore store(inFolder(folder.path(), 1));
    store.add(printed("<p>"));
    std::filesystem::remove(folder / "ticket-000001.bin");
    EXPECT_EQ(store.add(printed("<p>")), "");
    EXPECT_EQ(folder.names(), (Names{"ticket-000002.bin", "ticket-000002.png"}));
}

TEST(TicketFolder, RefusesAFolderThatCannotBeMade) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "file", "");
    const std::string below = folder / "file/below";
    EXPECT_EQ(refusal(inFolder(below)), "cannot make the folder " + below + ": Not a directory");
    const std::string file = folder / "file";
    EXPECT_EQ(refusal(inFolder(file)), "cannot make the folder " + file + ": Not a directory");
}

TEST(TicketFolder, RefusesAFolderThatCannotBeWrittenTo) {
    const test::TemporaryFolder folder;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    {
        const test::WithoutRootRights without;
        if (!without.succeeded()) GTEST_SKIP() << "root's rights cannot be laid down";
        EXPECT_EQ(refusal(inFolder(folder.path())),
                  "cannot write to the folder " + folder.path() + ": Permission denied");
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
}

TEST(TicketFolder, RefusesAFolderThatAnotherPrinterWritesTo) {
    const test::TemporaryFolder folder;
    {
        const TicketStore store(inFolder(folder.path()));
        EXPECT_EQ(refusal(inFolder(folder.path())),
                  "another printer writes to the folder " + folder.path());
    }
    EXPECT_EQ(refusal(inFolder(folder.path())), "");
}

}  // namespace
}  // namespace tavio::virtual_printer
