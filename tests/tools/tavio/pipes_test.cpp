// Standard input, named pipes and standard output.

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

class Pipes : public ToolTest {
  protected:
    // The bytes that printing this input sends, which must succeed.
    std::string bytesFrom(const std::string& input, std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--to", "file:piped.bin"});
        Ran ran = tavioFrom(input, arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(withoutLosses(ran.err), "");
        return readFile(at("piped.bin"));
    }
};

TEST_F(Pipes, AreKnownByTheirContent) {
    const std::string picture = greyBmp(32, 32);
    writeFile(at("a.bmp"), picture);
    writeFile(at("a.pdf"), pdf(72, 48));
    writeFile(at("a.txt"), "<RC1,2>caf\xC3\xA9");
    for (const char* name : {"a.bmp", "a.pdf", "a.txt"}) {
        SCOPED_TRACE(name);
        const std::string expected = bytesOf({"print", name, "--cut"});
        const std::string content = readFile(at(name));
        EXPECT_TRUE(bytesFrom(content, {"print", "-", "--cut"}) == expected);
        EXPECT_TRUE(bytesFrom(content, {"print", "/dev/stdin", "--cut"}) == expected);
    }
    EXPECT_TRUE(bytesFrom(picture, {"logo", "store", "3", "-"}) ==
                bytesOf({"logo", "store", "3", "a.bmp"}));
    EXPECT_TRUE(bytesFrom(picture, {"raw", "-"}) == picture);
}

TEST_F(Pipes, AreWhatTheirTypeSays) {
    EXPECT_EQ(bytesFrom("%PDF-1.4", {"print", "-", "--type", "text"}), "%PDF-1.4");
    Ran ran = tavioFrom("just a text", {"print", "-", "--type", "pdf"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(ran.err.starts_with("tavio: standard input cannot be drawn: ")) << ran.err;
    ran = tavioFrom("just a text", {"print", "-", "--type", "png"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(ran.err.starts_with("tavio: standard input is no picture to print: ")) << ran.err;
    EXPECT_EQ(tavio({"print", "-", "--type", "gif"}).status, 2);
    writeFile(at("notes"), "A");
    EXPECT_EQ(bytesOf({"print", "notes", "--type", "text"}), "A");
}

TEST_F(Pipes, ThatCannotBePrintedAreRefused) {
    for (const auto& [input, sentence] :
         {std::pair<std::string, std::string>{"", "standard input is empty"},
          {"caf\xE9",
           "standard input cannot be printed: it is no PDF, PNG, JPEG or BMP file and no text"}}) {
        Ran ran = tavioFrom(input, {"print", "-", "--cut"});
        EXPECT_EQ(ran.status, 1);
        EXPECT_EQ(ran.err, "tavio: " + sentence + "\n");
    }
    Ran ran = tavioFrom("text", {"logo", "store", "1", "-"});
    EXPECT_EQ(ran.err, "tavio: standard input cannot become a logo: a text has no picture\n");
    ran = tavioFrom("text", {"print", "-", "-"});
    EXPECT_EQ(ran.err, "tavio: standard input can be read only once\n");
    EXPECT_FALSE(std::filesystem::exists(at("ticket.png")));
}

TEST_F(Pipes, MayHaveNames) {
    ASSERT_EQ(::mkfifo(at("pipe.doc").c_str(), 0600), 0);
    std::thread writer([&] {
        const machine::Descriptor pipe(::open(at("pipe.doc").c_str(), O_WRONLY | O_CLOEXEC));
        EXPECT_EQ(::write(pipe.get(), "Row F", 5), 5);
    });
    EXPECT_EQ(bytesOf({"print", "pipe.doc"}), "Row F");
    writer.join();
}

TEST_F(Pipes, AreReadByOtherCommandsToo) {
    const std::string job = "<RC10,20>Row F<p>";
    Ran ran = tavioFrom(job, {"decode", "-"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find("0000009  text: \"Row F\""), std::string::npos) << ran.out;
    EXPECT_EQ(tavioFrom(job, {"preview", "-", "-o", "piped.png"}).status, 0);
    writeFile(at("job.bin"), job);
    tavio({"preview", "job.bin", "-o", "file.png"});
    EXPECT_EQ(readFile(at("piped.png")), readFile(at("file.png")));
    EXPECT_EQ(tavioFrom(greyBmp(32, 32), {"info", "-"}).status, 0);
}

TEST_F(Pipes, TakeTheBytesOfAJob) {
    writeFile(at("a.bmp"), greyBmp(32, 32));
    const std::string expected = bytesOf({"print", "a.bmp", "--cut"});
    Ran ran = tavio({"print", "a.bmp", "--cut", "--to", "-"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.out == expected);
    EXPECT_EQ(ran.err, "");
}

TEST_F(Pipes, TakeAPicture) {
    const Ran ran = tavio({"send", "<RC10,10>A<p>B", "--to", "png:-"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "tavio: warning: of 2 tickets the first was written\n");
    tavio({"send", "<RC10,10>A<p>B"});
    EXPECT_TRUE(ran.out == readFile(at("ticket.png")));
}

TEST_F(Pipes, ThatAreFullOrClosedFail) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    const Ran full = tavioInto(::open("/dev/full", O_WRONLY | O_CLOEXEC), {"cut", "--to", "-"});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "tavio: standard output cannot be written: No space left on device\n");
    Start start;
    start.withoutOutput = true;
    EXPECT_EQ(Running(folder.path(), {"cut", "--to", "-"}, start).finish().status, 1);
}

TEST_F(Pipes, ThatBreakHaveAPart) {
    writeFile(at("large.bin"), std::string(std::size_t{1} << 20U, 'x'));
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    Running running(folder.path(), {"raw", "large.bin", "--to", "-"}, ends[1]);
    machine::Descriptor reading(ends[0]);
    char byte = 0;
    EXPECT_EQ(::read(reading.get(), &byte, 1), 1);
    reading.reset();
    const Ran ran = running.finish();
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "tavio: standard output cannot be written: Broken pipe\n");
}

TEST_F(Pipes, AreNoTerminals) {
    int terminal = -1;
    int program = -1;
    if (::openpty(&terminal, &program, nullptr, nullptr, nullptr) != 0) {
        GTEST_SKIP() << "no pseudo-terminals here";
    }
    const machine::Descriptor reading(terminal);
    const Ran ran = tavioInto(program, {"cut", "--to", "-"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err,
              "tavio: standard output is a terminal, which a job would upset: redirect it\n");
}

TEST_F(Pipes, TakeOneThingOnly) {
    const Ran ran = tavio({"cut", "--to", "-", "--json"});
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.err, "tavio: --json and --to - both need standard output\n");
}

TEST_F(Pipes, HaveALimit) {
    writeFile(at("five"), "12345");
    EXPECT_EQ(tool::InputFile(at("five")).rest(5).size(), 5U);
    try {
        tool::InputFile(at("five")).rest(4);
        FAIL();
    } catch (const tool::Failure& failure) {
        EXPECT_EQ(failure.what(), at("five") + " has more than 4 bytes, the limit");
    }
    std::string large;
    for (int line = 0; line < (17 << 20) / 16; ++line) large += "# fifteen bytes\n";
    const Ran ran = tavioFrom(large, {"run", "-"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: standard input has more than 16 MiB, the limit\n");
}

}  // namespace
}  // namespace tavio::test
