// Scripts end to end.

#include <filesystem>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

class Run : public ToolTest {
  protected:
    void SetUp() override {
        writeFile(at("black.bmp"), greyBmp(32, 32));
        writeFile(at("page.pdf"), pdf(72, 72));
    }
    std::string bytesOfScript(const std::string& script) const {
        writeFile(at("script"), script);
        return bytesOf({"run", "script"});
    }
};

TEST_F(Run, SendsWhatTheCommandsWouldSend) {
    const std::string expected =
        bytesOf({"logo", "store", "7", "black.bmp", "--threshold"}) +
        bytesOf({"print", "black.bmp", "--row", "12", "--stock", "cinema"}) +
        bytesOf({"print", "page.pdf", "--orientation", "portrait", "--stock", "cinema"}) +
        bytesOf({"send", "<RC10,20>Row F"}) + bytesOf({"logo", "print", "7", "--column", "-3"}) +
        bytesOf({"raw", "black.bmp"}) + bytesOf({"clear"}) + bytesOf({"cut"}) + bytesOf({"eject"});
    EXPECT_TRUE(bytesOfScript("logo store 7 black.bmp --threshold\n"
                              "--stock cinema\n"
                              "print black.bmp --row 12\n"
                              "print page.pdf --orientation portrait\n"
                              "send '<RC10,20>Row F'\n"
                              "logo print 7 --column -3\n"
                              "raw black.bmp\n"
                              "clear\n"
                              "cut\n"
                              "eject\n") == expected);
}

TEST_F(Run, IsOneConnection) {
    SocketPrinter printer([](Client& client) { client.read(); });
    Ran ran = tavioFrom("send A\ncut\nsend B\ncut\n", {"run", "-", "--to", printer.target()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "sent, unconfirmed: 8 bytes\n");
    EXPECT_EQ(printer.received(), "A<p>B<p>");
}

TEST_F(Run, TakesSettingsFromTheCommandLineToo) {
    writeFile(at("script"), "print black.bmp\n--resolution 600\nprint black.bmp\n");
    EXPECT_EQ(
        bytesOf({"run", "script", "--path", "<P2>", "--scaled"}),
        bytesOf({"print", "black.bmp", "--path", "<P2>", "--scaled"}) +
            bytesOf({"print", "black.bmp", "--path", "<P2>", "--scaled", "--resolution", "600"}));
}

TEST_F(Run, TellsEveryWrongLineAndSendsNothing) {
    writeFile(at("script"),
              "print black.bmp\n"
              "print missing.png\n"
              "bogus\n"
              "text 'caf\xC3\xA9' --printer-face\n"
              "print black.doc\n"
              "send ok\n");
    writeFile(at("black.doc"), "x");
    const links::test::Port closed;
    Ran ran = tavio({"run", "script", "--to", "tcp://" + closed.address(), "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(
        ran.err.starts_with("tavio: line 2: missing.png does not exist\n"
                            "tavio: line 3: bogus is no command of a script: "))
        << ran.err;
    EXPECT_NE(ran.err.find("\ntavio: line 4: the text has \"\xC3\xA9\" (U+00E9)"),
              std::string::npos)
        << ran.err;
    EXPECT_NE(ran.err.find("\ntavio: line 5: black.doc cannot be printed: "), std::string::npos)
        << ran.err;
    EXPECT_NE(
        ran.out.find(R"({"kind":"not-found","sentence":"missing.png does not exist","line":2)"),
        std::string::npos)
        << ran.out;
}

TEST_F(Run, WarnsWithTheLine) {
    writeFile(at("low.bmp"), greyBmp(32, 7));
    Ran ran = tavioFrom("cut\nprint low.bmp --classic\n", {"run", "-"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err,
              "tavio: warning: line 2: the picture is 32 x 7 dots: of fewer than 8 rows nothing "
              "prints\n");
}

TEST_F(Run, NeedsACommand) {
    writeFile(at("script"), "# nothing\n\n--stock cinema\n");
    expectRefusal({"run", "script"}, "tavio: script has no command");
    expectRefusal({"run", "missing"}, "tavio: missing does not exist");
    expectRefusal({"run", "."}, "tavio: . is a folder, not a file");
}

TEST_F(Run, DoesNotReadItsOwnInputTwice) {
    Ran ran = tavioFrom("print -\n", {"run", "-"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: line 1: standard input is the script itself\n");
    writeFile(at("script"), "raw -\nraw -\n");
    ran = tavioFrom("<p>", {"run", "script"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: line 2: standard input can be read only once\n");
}

TEST_F(Run, DrawsTheTicketsOfAJobWithItsSettings) {
    writeFile(at("script"), "--stock cinema\nsend A\ncut\nsend B\ncut\n");
    EXPECT_EQ(tavio({"run", "script"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(at("ticket-2.png")));
    EXPECT_EQ(tavio({"send", "A", "--stock", "cinema", "--to", "a.png"}).status, 0);
    EXPECT_EQ(readFile(at("ticket.png")), readFile(at("a.png")));
}

}  // namespace
}  // namespace tavio::test
