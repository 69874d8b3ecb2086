// The programs in examples/, as a newcomer runs them.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/virtual_printer.h"

namespace tavio::test {
namespace {

class Examples : public ToolTest {
  protected:
    struct Shown {
        int status = -1;
        std::string text;  // standard output and error, as they came
    };

    // Runs a command of the shell in the test's folder; the examples are on its path.
    Shown run(const std::string& command) const {
        const std::string line =
            "cd " + folder.path() + " && PATH=" TAVIO_BIN_DIR ":$PATH; { " + command + "; } 2>&1";
        Shown shown;
        std::FILE* const output = ::popen(line.c_str(), "r");
        std::array<char, 4096> buffer{};
        while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), output))
            shown.text.append(buffer.data(), count);
        const int status = ::pclose(output);
        if (WIFEXITED(status)) shown.status = WEXITSTATUS(status);
        return shown;
    }

    std::string ticketOf(const VirtualPrinter&) const {
        return readFile(at("tickets/ticket-000001.bin"));
    }

    void writePhoto() const { writeFile(at("photo.bmp"), greyBmp(320, 240, 100)); }
};

TEST_F(Examples, TheFirstTicketIsThePhotoThatTheToolPrints) {
    writePhoto();
    const std::string bytes =
        bytesOf({"print", "photo.bmp", "--row", "12", "--column", "12", "--cut"});
    VirtualPrinter printer(folder.path(), {});
    const Shown shown = run("first_ticket photo.bmp " + printer.target());
    EXPECT_EQ(shown.text, "sent, unconfirmed: " + std::to_string(bytes.size()) + " bytes\n");
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(printer.finish().status, 0);
    EXPECT_TRUE(ticketOf(printer) == bytes);
}

TEST_F(Examples, TheFirstTicketIsNotPrintedWithoutItsPhoto) {
    const Shown shown = run("first_ticket photo.bmp tcp://127.0.0.1:1");
    EXPECT_EQ(shown.text, "photo.bmp does not exist\n");
    EXPECT_EQ(shown.status, 1);
}

TEST_F(Examples, TheKioskPrintsForEachNameAndRefusesWhatThePrinterCannotWrite) {
    writePhoto();
    VirtualPrinter printer(folder.path(), {"--reply", "READY", "--stock", "cinema"});
    const Shown shown =
        run("printf 'Jos\303\251\\n<p>\\nAnna\\n' | kiosk " + printer.target() + " photo.bmp");
    EXPECT_EQ(
        shown.text,
        "Jos\303\251: the text has \"\303\251\" (U+00E9), which the printer's face does not have\n"
        "<p>: the text has \"<\" (U+003C), which begins a command\n"
        "printed for Anna\n");
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(printer.finish().status, 0);
    EXPECT_TRUE(ticketOf(printer).ends_with("<RC640,40>Anna<p>"));
}

TEST_F(Examples, TheKioskKeepsATicketWhenThePrinterIsOutOfPaper) {
    writePhoto();
    VirtualPrinter printer(folder.path(), {"--reply", "PAPER OUT"});
    const Shown shown = run("echo Anna | kiosk " + printer.target() + " photo.bmp");
    EXPECT_EQ(shown.text, "Anna: load paper, then sell this ticket again\n");
    EXPECT_EQ(shown.status, 1);
    EXPECT_FALSE(std::filesystem::exists(at("tickets/ticket-000001.bin")));
}

TEST_F(Examples, ThePreviewIsTheTicketAndIsPrintedOnlyIfThePersonAgrees) {
    writePhoto();
    VirtualPrinter printer(folder.path(), {});
    const std::string command = "preview_first photo.bmp seen.png " + printer.target();
    EXPECT_EQ(run("echo n | " + command).text, "look at seen.png; print it? [y/n] ");
    EXPECT_FALSE(std::filesystem::exists(at("tickets/ticket-000001.png")));

    const Shown shown = run("echo y | " + command);
    EXPECT_TRUE(shown.text.starts_with("look at seen.png; print it? [y/n] sent, unconfirmed: "))
        << shown.text;
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(printer.finish().status, 0);
    EXPECT_TRUE(readFile(at("tickets/ticket-000001.png")) == readFile(at("seen.png")));
}

TEST_F(Examples, ALinkOfTheApplicationsOwnIsGivenTheBytes) {
    const Shown shown = run("own_link 'Row F'");
    EXPECT_EQ(shown.text,
              "bus: connected\n"
              "bus: 35 bytes: <P1><LM><RE0><DI><RC100,50>Row F<p>\n"
              "bus: released\n"
              "answered by the printer: 35 bytes sent\n");
    EXPECT_EQ(shown.status, 0);
}

// Tickets that are composed of elements alone: a script and a program of each.
class ComposedExamples : public Examples {
  protected:
    void SetUp() override {
        std::filesystem::create_directory_symlink(TAVIO_SOURCE_DIR "/examples", at("examples"));
    }

    static constexpr std::array kNames{"concert", "cloakroom", "price"};

    static std::string scriptOf(const std::string& name) { return "examples/" + name + ".tavio"; }
};

TEST_F(ComposedExamples, AreTheSameTicketAsScriptAndAsProgram) {
    for (const std::string name : kNames) {
        SCOPED_TRACE(name);
        const std::string bytes = bytesOf({"run", scriptOf(name)});
        std::filesystem::remove_all(at("tickets"));
        VirtualPrinter printer(folder.path(), {});
        const Shown shown = run(name + " " + printer.target());
        ASSERT_EQ(shown.text, "sent, unconfirmed: " + std::to_string(bytes.size()) + " bytes\n");
        EXPECT_EQ(shown.status, 0);
        printer.finish();
        EXPECT_TRUE(ticketOf(printer) == bytes);
    }
}

TEST_F(ComposedExamples, AreDrawnWithoutAWarning) {
    for (const std::string name : kNames) {
        const Ran ran = tavio({"run", scriptOf(name), "--to", name + ".png"});
        EXPECT_EQ(ran.status, 0) << name;
        EXPECT_EQ(ran.err, "") << name;
    }
}

TEST_F(ComposedExamples, AreShort) {
    for (const std::string name : kNames) {
        for (const char* extension : {".tavio", ".cpp"}) {
            const std::string text = readFile(at("examples/" + name + extension));
            EXPECT_FALSE(text.empty());
            EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 30) << name << extension;
        }
    }
}

TEST_F(ComposedExamples, TellWhatIsWrong) {
    std::filesystem::remove(at("examples"));
    const Shown shown = run("price tcp://127.0.0.1:1");
    EXPECT_EQ(shown.status, 1);
    EXPECT_TRUE(shown.text.starts_with("examples/fonts/DejaVuSans.ttf does not exist\n"))
        << shown.text;
}

// The README shows the function of examples/first_ticket.cpp as it stands.
TEST_F(Examples, TheReadmeShowsTheFirstTicketAsItIsTested) {
    const std::string program = readFile(TAVIO_SOURCE_DIR "/examples/first_ticket.cpp");
    const std::size_t begin = program.find("#include <iostream>");
    const std::size_t end = program.find("\nint main(");
    ASSERT_NE(begin, std::string::npos);
    ASSERT_NE(end, std::string::npos);
    const std::string shown = "```cpp\n" + program.substr(begin, end - begin) + "```\n";
    EXPECT_NE(readFile(TAVIO_SOURCE_DIR "/README.md").find(shown), std::string::npos) << shown;
}

}  // namespace
}  // namespace tavio::test
