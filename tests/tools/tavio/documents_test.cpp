// Several documents, pages and copies on one connection.

#include <gtest/gtest.h>

#include "tools/tavio/page_list.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

using Numbers = std::vector<std::int32_t>;

TEST(PageLists, AreNumbersAndRanges) {
    EXPECT_EQ(tool::parsePages("3").value().numbers(1), (Numbers{3}));
    EXPECT_EQ(tool::parsePages("1-3").value().numbers(1), (Numbers{1, 2, 3}));
    EXPECT_EQ(tool::parsePages("5,1-2,5").value().numbers(1), (Numbers{5, 1, 2, 5}));
    EXPECT_EQ(tool::parsePages("all").value().numbers(3), (Numbers{1, 2, 3}));
    EXPECT_EQ(tool::PageList{}.numbers(3), (Numbers{1}));
    for (std::string_view text :
         {"", "0", "-1", "+1", "1-", "-2", "3-1", "1,", ",1", "1,,2", "1-2-3", "a", "All", " 1",
          "1 ", "1-10001", "1-9000,1-9000", "2147483647", "99999999999999999999"}) {
        EXPECT_FALSE(tool::parsePages(text).has_value()) << text;
    }
}

class Documents : public ToolTest {
  protected:
    void SetUp() override {
        writeFile(at("a.pdf"), pdf(72, 48, 5));
        writeFile(at("b.bmp"), greyBmp(32, 32));
    }
};

TEST_F(Documents, AreATicketEach) {
    const std::string a = bytesOf({"print", "a.pdf", "--page", "1"});
    const std::string b = bytesOf({"print", "b.bmp"});
    writeFile(at("c.txt"), "C");
    EXPECT_EQ(bytesOf({"print", "c.txt", "c.txt", "--cut"}), "C<p>C<p>");
    EXPECT_EQ(bytesOf({"print", "c.txt", "c.txt", "--eject"}), "C<q>C<q>");
    EXPECT_EQ(bytesOf({"print", "c.txt", "c.txt"}), "C<p>C") << "parted all the same";
    SocketPrinter printer([](Client& client) { client.read(); });
    Ran ran = tavio({"print", "a.pdf", "b.bmp", "--cut", "--to", printer.target()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(printer.received() == a + "<p>" + b + "<p>");
}

TEST_F(Documents, AreCopiedAsAWhole) {
    const std::string b = bytesOf({"print", "b.bmp"});
    writeFile(at("c.txt"), "C");
    EXPECT_TRUE(bytesOf({"print", "b.bmp", "c.txt", "--copies", "2", "--cut"}) ==
                b + "<p>C<p>" + b + "<p>C<p>");
    EXPECT_EQ(bytesOf({"print", "c.txt", "--copies", "3"}), "C<p>C<p>C");
}

TEST_F(Documents, WarnOfPagesThatAreLeftOut) {
    Ran ran = tavio({"print", "a.pdf", "--cut"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "tavio: warning: a.pdf has 5 pages, of which 4 are not printed\n");
    EXPECT_EQ(tavio({"print", "a.pdf", "--page", "2"}).err, "") << "that page was wanted";
    EXPECT_EQ(tavio({"print", "a.pdf", "--copies", "2"}).err, ran.err) << "once for all copies";
}

TEST_F(Documents, PrintThePagesThatAreChosen) {
    const std::string page = bytesOf({"print", "a.pdf", "--page", "4"});
    EXPECT_TRUE(bytesOf({"print", "a.pdf", "--pages", "all", "--cut"}) ==
                page + "<p>" + page + "<p>" + page + "<p>" + page + "<p>" + page + "<p>");
    EXPECT_TRUE(bytesOf({"print", "a.pdf", "--pages", "1,4-5"}) ==
                page + "<p>" + page + "<p>" + page);
    EXPECT_EQ(bytesOf({"print", "b.bmp", "--pages", "all"}), bytesOf({"print", "b.bmp"}));
}

TEST_F(Documents, HaveNoOtherPages) {
    expectRefusal({"print", "a.pdf", "--page", "6"},
                  "tavio: a.pdf has no page 6, its last one is page 5");
    expectRefusal({"print", "b.bmp", "--page", "2"},
                  "tavio: b.bmp is no PDF, so it has no other page than the first");
    expectRefusal({"logo", "store", "1", "b.bmp", "--page", "2"},
                  "tavio: b.bmp is no PDF, so it has no other page than the first");
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--page", "0"},
                                                  {"--page", "1-2"},
                                                  {"--page", "all"},
                                                  {"--pages", "x"},
                                                  {"--page", "1", "--pages", "2"},
                                                  {"--copies", "0"},
                                                  {"--copies", "1001"}}) {
        std::vector<std::string> arguments{"print", "a.pdf"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(tavio(arguments).status, 2) << testing::PrintToString(wrong);
    }
}

TEST_F(Documents, AreNamedInWarningsIfThereAreSeveral) {
    writeFile(at("low.bmp"), greyBmp(32, 7));
    Ran ran = tavio({"print", "b.bmp", "low.bmp", "--classic"});
    EXPECT_EQ(ran.err,
              "tavio: warning: low.bmp: the picture is 32 x 7 dots: of fewer than 8 rows nothing "
              "prints\n");
}

TEST_F(Documents, AreAllCheckedFirst) {
    Ran ran = tavio({"print", "b.bmp", "missing.png", "gone.bmp", "--to", "file:job.bin"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err,
              "tavio: missing.png does not exist\n"
              "tavio: gone.bmp does not exist\n");
    EXPECT_EQ(folder.names().count("job.bin"), 0U);
}

TEST_F(Documents, MayHaveNamesInBrackets) {
    writeFile(at("[a,b].txt"), "A");
    EXPECT_EQ(bytesOf({"print", "[a,b].txt"}), "A");
    writeFile(at("[a,b]"), "B");
    EXPECT_EQ(bytesOf({"print", "--type", "text", "./[a,b]"}), "B");
}

}  // namespace
}  // namespace tavio::test
