// Input that the tool refuses: one sentence, exit status 1, and nothing written.

#include <array>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/pdf_page.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

class Refusals : public ToolTest {
  protected:
    // Printing the file is refused, whatever the job goes to.
    void expectNotPrinted(const std::string& name, const std::string& line) const {
        expectRefusal({"print", name, "--cut"}, line);
        expectRefusal({"print", name, "--cut", "--to", "file:job.bin"}, line);
        expectRefusal({"print", name, "--cut", "--trace"}, line);
    }
};

const std::string kSupported = "; supported are TXT txt PDF pdf PNG png JPG jpg JPEG jpeg BMP bmp";
const std::string kSupportedAsLogo = "; supported are PDF pdf PNG png JPG jpg JPEG jpeg BMP bmp";

TEST_F(Refusals, MissingFiles) {
    expectNotPrinted("missing.png", "tavio: missing.png does not exist");
    expectNotPrinted("missing.pdf", "tavio: missing.pdf does not exist");
    expectNotPrinted("missing/x.txt", "tavio: missing/x.txt does not exist");
    expectNotPrinted("", "tavio: \"\" does not exist");
    expectRefusal({"raw", "missing"}, "tavio: missing does not exist");
    expectRefusal({"preview", "missing"}, "tavio: missing does not exist");
    expectRefusal({"decode", "missing"}, "tavio: missing does not exist");
    expectRefusal({"logo", "store", "1", "missing.png"}, "tavio: missing.png does not exist");
}

TEST_F(Refusals, FoldersAndDevices) {
    std::filesystem::create_directory(at("folder.png"));
    expectNotPrinted("folder.png", "tavio: folder.png is a folder, not a file");
    expectRefusal({"raw", "folder.png"}, "tavio: folder.png is a folder, not a file");
    expectRefusal({"decode", "."}, "tavio: . is a folder, not a file");
    expectRefusal({"raw", "/dev/null"}, "tavio: /dev/null is not a regular file");
}

TEST_F(Refusals, FilesWithoutTheRightToRead) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
    writeFile(at("secret.txt"), "x");
    ASSERT_EQ(::chmod(at("secret.txt").c_str(), 0), 0);
    Ran ran = tavio({"print", "secret.txt"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: secret.txt cannot be read: Permission denied\n");
}

TEST_F(Refusals, UnsupportedExtensions) {
    writeFile(at("a.doc"), "x");
    expectNotPrinted("a.doc",
                     "tavio: a.doc cannot be printed: its extension \"doc\" is not "
                     "supported" +
                         kSupported);
    writeFile(at("plain"), "x");
    expectNotPrinted("plain", "tavio: plain cannot be printed: it has no extension" + kSupported);
    writeFile(at("a.Pdf"), pdf(72, 72));
    expectNotPrinted("a.Pdf",
                     "tavio: a.Pdf cannot be printed: its extension is spelled \"Pdf\", "
                     "and only PDF and pdf are taken, so rename it" +
                         kSupported);
}

TEST_F(Refusals, DocumentsThatCannotBecomeALogo) {
    writeFile(at("a.txt"), "x");
    writeFile(at("a.Txt"), "x");
    writeFile(at("a.gif"), "x");
    expectRefusal(
        {"logo", "store", "1", "a.txt"},
        "tavio: a.txt cannot become a logo: a text file has no picture" + kSupportedAsLogo);
    expectRefusal(
        {"logo", "store", "1", "a.Txt"},
        "tavio: a.Txt cannot become a logo: a text file has no picture" + kSupportedAsLogo);
    expectRefusal({"logo", "store", "1", "a.gif"},
                  "tavio: a.gif cannot become a logo: its extension \"gif\" is not supported" +
                      kSupportedAsLogo);
}

TEST_F(Refusals, PicturesThatCannotBeDecoded) {
    for (const auto& [name, content] : {std::pair<std::string, std::string>{"a.png", brokenPng()},
                                        {"b.jpg", "\xFF\xD8\xFF"},
                                        {"c.bmp", greyBmp(8, 8).substr(0, 100)},
                                        {"d.png", ""},
                                        {"e.jpeg", "no picture at all"}}) {
        SCOPED_TRACE(name);
        writeFile(at(name), content);
        Ran ran = tavio({"print", name, "--cut"});
        EXPECT_EQ(ran.status, 1);
        const std::string opening = "tavio: " + name + " is no picture to print: ";
        EXPECT_TRUE(ran.err.starts_with(opening) && ran.err.size() > opening.size() + 5) << ran.err;
        EXPECT_EQ(ran.err.find('\n'), ran.err.size() - 1) << "one line";
        EXPECT_FALSE(std::filesystem::exists(at("ticket.png")));
        EXPECT_EQ(tavio({"logo", "store", "4", name}).status, 1);
    }
    EXPECT_EQ(folder.names().size(), 5U);
}

// The header alone tells nothing of these.
TEST_F(Refusals, PicturesThatAreDamagedBehindTheirHeader) {
    writeFile(at("black.bmp"), greyBmp(32, 16));
    ASSERT_EQ(tavio({"print", "black.bmp", "--cut"}).status, 0);
    const std::string png = readFile(at("ticket.png"));
    ASSERT_GT(png.size(), 100U);
    std::string changed = png;
    changed.back() ^= 1;
    for (const auto& [name, content, why] :
         {std::array<std::string, 3>{"a.png", png.substr(0, png.size() - 1),
                                     "the PNG file is cut short"},
          {"b.png", png.substr(0, png.size() / 2), "the PNG file is cut short"},
          {"c.PNG", changed, "the PNG file is damaged"},
          {"d.bmp", badIndexBmp(), "the BMP file has a pixel outside of its palette"}}) {
        SCOPED_TRACE(name);
        writeFile(at(name), content);
        writeFile(at("job.bin"), "of the job before");
        const std::string line = "tavio: " + name + " is no picture to print: " + why;
        expectRefusal({"print", name, "--cut"}, line);
        expectRefusal({"print", name, "--cut", "--threshold"}, line);
        expectRefusal({"print", name, "--cut", "--to", "file:job.bin"}, line);
        expectRefusal({"logo", "store", "4", name}, line);
    }
}

TEST_F(Refusals, PdfsThatCannotBeDrawn) {
    writeFile(at("none.pdf"), pdf(72, 72, 0));
    writeFile(at("text.pdf"), "just a text");
    writeFile(at("empty.pdf"), "");
    writeFile(at("huge.pdf"), pdf(14401, 72));
    writeFile(at("secret.pdf"), encryptedPdf());
    using platform::PdfOutcome;
    for (const auto& [name, outcome] : {std::pair{"none.pdf", PdfOutcome::kNoPage},
                                        {"text.pdf", PdfOutcome::kNotPdf},
                                        {"empty.pdf", PdfOutcome::kNotPdf},
                                        {"huge.pdf", PdfOutcome::kTooLarge},
                                        {"secret.pdf", PdfOutcome::kEncrypted}}) {
        SCOPED_TRACE(name);
        const std::string line =
            std::string("tavio: ") + name + " cannot be drawn: " + platform::describe(outcome);
        expectNotPrinted(name, line);
        const std::string neither =
            std::string("tavio: ") + name + " is neither a PDF, PNG, JPEG nor BMP file";
        expectRefusal({"logo", "store", "4", name},
                      outcome == PdfOutcome::kNotPdf ? neither : line);
    }
}

TEST_F(Refusals, TextsThatAreNotUtf8) {
    writeFile(at("latin.txt"), "caf\xE9");
    expectNotPrinted("latin.txt", "tavio: latin.txt is not UTF-8 text");
    expectRefusal({"send", "caf\xE9"}, "tavio: the text to send is not UTF-8");
}

TEST_F(Refusals, PagesOfLessThanADot) {
    writeFile(at("speck.pdf"), pdf(0.1, 0.1));
    const std::string line =
        "tavio: speck.pdf comes to 0 x 0 dots, so there is nothing to print: enlarge it";
    expectRefusal({"print", "speck.pdf", "--classic", "--cut"}, line);
    expectRefusal({"print", "speck.pdf", "--classic", "--cut", "--to", "file:job.bin"}, line);
    expectRefusal({"logo", "store", "1", "speck.pdf", "--classic", "--to", "file:job.bin"}, line);
}

TEST_F(Refusals, PlacesThatCannotBeWritten) {
    expectRefusal({"cut", "--to", "file:missing/job.bin"},
                  "tavio: missing/job.bin cannot be written: No such file or directory");
    expectRefusal({"cut", "--to", "missing/ticket.png"},
                  "tavio: missing/ticket.png cannot be written: No such file or directory");
    expectRefusal({"cut", "--to", "file:."}, "tavio: . cannot be written: Is a directory");
    writeFile(at("job.bin"), "<p>");
    expectRefusal({"preview", "job.bin", "-o", "missing/ticket.png"},
                  "tavio: missing/ticket.png cannot be written: No such file or directory");
    if (!std::filesystem::exists("/dev/full")) return;
    expectRefusal({"cut", "--to", "file:/dev/full"},
                  "tavio: /dev/full cannot be written: No space left on device");
}

TEST_F(Refusals, PipesThatNobodyReads) {
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    expectRefusal({"cut", "--to", "file:pipe"}, "tavio: pipe is a pipe that nobody reads");
}

TEST_F(Refusals, TheDocumentAsThePlaceToPrintTo) {
    writeFile(at("ticket.png"), greyBmp(8, 8));
    writeFile(at("job.bin"), "<p>");
    expectRefusal({"print", "ticket.png"},
                  "tavio: ticket.png is the document itself, so choose another place with --to");
    expectRefusal({"raw", "job.bin", "--to", "file:./job.bin"},
                  "tavio: job.bin is the job itself, so choose another place with --to");
    writeFile(at("job.png"), "<p>");
    expectRefusal({"preview", "job.png", "-o", "./job.png"},
                  "tavio: job.png is the job itself, so choose another place with --output");
}

TEST_F(Refusals, TheStatusOfWhatIsNoPrinter) {
    expectRefusal({"status"}, "tavio: there is no reply: ticket.png is not a printer");
    expectRefusal({"status", "--to", "file:job.bin"},
                  "tavio: there is no reply: job.bin is not a printer");
}

TEST_F(Refusals, NamesThatWouldSteerTheTerminal) {
    expectRefusal({"print", "a\x1B[2J\nb.png"}, "tavio: a\\x1B[2J\\x0Ab.png does not exist");
}

}  // namespace
}  // namespace tavio::test
