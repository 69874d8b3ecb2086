// Printing over real connections: a socket of this machine, and a pseudo-terminal.

#include <filesystem>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "support/pseudo_terminal.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

// Longer than any test may take, for what must not end by its deadline.
const std::string kLong = "3600";

// Enough to outlast every buffer between here and a peer that does not read.
constexpr std::size_t kMoreThanBuffersHold = std::size_t{8} << 20U;

class Printers : public ToolTest {
  protected:
    Ran tavioTo(SocketPrinter& printer, std::vector<std::string> arguments,
                const std::string& timeout = kLong) const {
        arguments.insert(arguments.end(), {"--to", printer.target(), "--timeout", timeout});
        return tavio(arguments);
    }
    std::string bytesInFile(std::vector<std::string> arguments) const {
        bytesOf(std::move(arguments));
        std::string bytes = readFile(at("job.bin"));
        std::filesystem::remove(at("job.bin"));
        return bytes;
    }
    void writeLargeJob() const {
        writeFile(at("large.bin"), std::string(kMoreThanBuffersHold, 'x'));
    }
};

void readAll(Client& client) {
    client.read();
}

TEST_F(Printers, GetExactlyTheBytesThatAFileGets) {
    writeFile(at("photo.bmp"), greyBmp(600, 400, 100));
    writeFile(at("page.pdf"), pdf(72, 72));
    writeFile(at("notes.txt"), "<RC1,2>caf\xC3\xA9");
    for (const std::vector<std::string>& job :
         {std::vector<std::string>{"print", "photo.bmp", "--cut"},
          {"print", "page.pdf", "--orientation", "portrait", "--eject"},
          {"print", "notes.txt"},
          {"logo", "store", "3", "photo.bmp"},
          {"logo", "print", "3", "--row", "7"},
          {"send", "<RC10,10>Row B"},
          {"raw", "photo.bmp"},
          {"cut"},
          {"eject"},
          {"clear"}}) {
        SCOPED_TRACE(testing::PrintToString(job));
        const std::string expected = bytesInFile(job);
        SocketPrinter printer(readAll);
        Ran ran = tavioTo(printer, job);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.out, "sent, unconfirmed: " + std::to_string(expected.size()) + " bytes\n");
        EXPECT_EQ(withoutLosses(ran.err), "");
        EXPECT_TRUE(printer.received() == expected);
    }
    EXPECT_EQ(folder.names(), (std::set<std::string>{"photo.bmp", "page.pdf", "notes.txt"}));
}

TEST_F(Printers, AnswerWhenTheyHaveAll) {
    SocketPrinter printer([](Client& client) {
        client.read();
        client.send("OK\x1B[2J");
    });
    Ran ran = tavioTo(printer, {"cut"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out,
              "answered by the printer: 3 bytes sent\n"
              "the printer says: OK\\x1B[2J\n");
    EXPECT_EQ(ran.err, "");
}

TEST_F(Printers, AreTraced) {
    SocketPrinter printer(readAll);
    Ran ran = tavioTo(printer, {"cut", "--trace"});
    EXPECT_EQ(ran.err,
              "tavio: trace: open\n"
              "tavio: trace: write 3 bytes\n"
              "tavio: trace: close\n");
}

TEST_F(Printers, ThatRefuseHaveBeenSentNothing) {
    const links::test::Port closed;
    const std::string address = closed.address();
    Ran ran = tavio({"cut", "--to", "tcp://" + address});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "nothing sent, safe to repeat\n");
    EXPECT_EQ(ran.err,
              "tavio: the printer at " + address + " cannot be reached: Connection refused\n");
}

TEST_F(Printers, ThatTakeNothingAreGivenUp) {
    writeLargeJob();
    SocketPrinter printer([](Client& client) { client.waitForBreak(); });
    Ran ran = tavioTo(printer, {"raw", "large.bin"}, "0.3");
    EXPECT_EQ(ran.status, 3);
    EXPECT_TRUE(ran.out.starts_with("partly sent, ")) << ran.out;
    EXPECT_NE(ran.out.find(" of 8388608 bytes"), std::string::npos) << ran.out;
    EXPECT_EQ(ran.out.find('\n'), ran.out.size() - 1) << ran.out;
    EXPECT_EQ(ran.err, "tavio: the printer at " + printer.address() + " took no byte for 300 ms\n");
}

TEST_F(Printers, ThatBreakOffHaveAPart) {
    writeLargeJob();
    for (bool reset : {false, true}) {
        SCOPED_TRACE(reset);
        SocketPrinter printer([reset](Client& client) {
            client.read(10'000);
            if (reset) client.resetWhenClosed();
        });
        Ran ran = tavioTo(printer, {"raw", "large.bin"});
        EXPECT_EQ(ran.status, 3);
        EXPECT_TRUE(ran.out.starts_with("partly sent, ")) << ran.out;
        EXPECT_NE(ran.out.find(" of 8388608 bytes"), std::string::npos) << ran.out;
        EXPECT_TRUE(ran.err.starts_with("tavio: the printer at " + printer.address() + " "))
            << ran.err;
        EXPECT_EQ(ran.err.find('\n'), ran.err.size() - 1) << ran.err;
    }
}

// The far end's system has all of the job, so the job is not lost; only the printer never said
// goodbye.
TEST_F(Printers, ThatNeverEndTheConnectionAreWarnedOf) {
    std::promise<void> toolHasEnded;
    SocketPrinter printer([&](Client& client) {
        client.waitForBytes();
        toolHasEnded.get_future().wait();
    });
    Ran ran = tavioTo(printer, {"cut"}, "0.3");
    toolHasEnded.set_value();
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "sent, unconfirmed: 3 bytes\n");
    EXPECT_TRUE(ran.err.starts_with("tavio: warning: ")) << ran.err;
}

TEST_F(Printers, AreNotReachedForForAnEmptyJob) {
    const links::test::Port closed;
    Ran ran = tavio({"send", "", "--to", "tcp://" + closed.address()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "nothing sent, safe to repeat\n");
    EXPECT_EQ(ran.err, "tavio: the job is empty, so there was nothing to send\n");
}

TEST_F(Printers, AreNotReachedForForAJobThatCannotBeSent) {
    for (const std::vector<std::string>& job :
         {std::vector<std::string>{"print", "missing.png"}, {"raw", "missing.bin"}}) {
        const links::test::Port closed;
        Ran ran = tavio({job[0], job[1], "--to", "tcp://" + closed.address()});
        EXPECT_EQ(ran.status, 1);
        EXPECT_EQ(ran.out, "") << "there was no job";
        EXPECT_EQ(ran.err, "tavio: " + job[1] + " does not exist\n");
    }
}

// Nothing is connected to before all of the job is known to be good.
TEST_F(Printers, AreNotReachedForForADocumentThatIsDamaged) {
    writeFile(at("speck.pdf"), pdf(0.1, 0.1));
    writeFile(at("a.bmp"), badIndexBmp());
    for (const auto& [name, why] :
         {std::pair{"speck.pdf",
                    "speck.pdf comes to 0 x 0 dots, so there is nothing to print: "
                    "enlarge it"},
          {"a.bmp",
           "a.bmp is no picture to print: the BMP file has a pixel outside of its palette"}}) {
        const links::test::Port closed;
        Ran ran = tavio({"print", name, "--classic", "--cut", "--to", "tcp://" + closed.address()});
        EXPECT_EQ(ran.status, 1);
        EXPECT_EQ(ran.out, "") << "there was no job";
        EXPECT_EQ(ran.err, std::string("tavio: ") + why + "\n");
    }
}

// A regular file whose reading fails.
TEST_F(Printers, AreNotReachedForForAJobThatCannotBeRead) {
    if (!std::filesystem::exists("/proc/self/mem")) GTEST_SKIP() << "no /proc";
    const links::test::Port closed;
    Ran ran = tavio({"raw", "/proc/self/mem", "--to", "tcp://" + closed.address()});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "tavio: /proc/self/mem cannot be read: Input/output error\n");
}

TEST_F(Printers, TellTheirStatus) {
    SocketPrinter printer([](Client& client) {
        client.send("READY\r\n");
        client.read();
    });
    Ran ran = tavioTo(printer, {"status"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "READY\\x0D\\x0A\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(printer.received(), "") << "asking sends nothing";
}

TEST_F(Printers, ThatSayNothingHaveNoStatus) {
    SocketPrinter silent(readAll);
    Ran ran = tavioTo(silent, {"status"}, "0.3");
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "tavio: there is no reply: " + silent.address() + " sent nothing\n");

    SocketPrinter closing([](Client&) {});
    ran = tavioTo(closing, {"status"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_TRUE(ran.err.starts_with("tavio: ")) << ran.err;
    EXPECT_EQ(ran.err.find('\n'), ran.err.size() - 1) << ran.err;

    const links::test::Port closed;
    const std::string address = closed.address();
    ran = tavio({"status", "--to", "tcp://" + address});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err,
              "tavio: the printer at " + address + " cannot be reached: Connection refused\n");
}

TEST_F(Printers, OverBluetoothNeedBluetooth) {
    Ran ran = tavio({"cut", "--trace", "--to", "bt://00:11:22:33:44:55", "--timeout", "0.3"});
    EXPECT_EQ(ran.status, 1) << "no such printer, or no Bluetooth at all";
    EXPECT_EQ(ran.out, "nothing sent, safe to repeat\n");
    EXPECT_TRUE(
        ran.err.starts_with("tavio: trace: open\n"
                            "tavio: trace: close\n"
                            "tavio: "))
        << ran.err;
}

TEST_F(Printers, OnASerialLineGetTheSameBytes) {
    links::test::PseudoTerminal line;
    if (!line.exists()) GTEST_SKIP() << "no pseudo-terminals here";
    std::string job;
    for (int byte = 0; byte < 256 * 200; ++byte) job += static_cast<char>(byte);
    writeFile(at("all.bin"), job);
    std::string received;
    std::thread printer([&] { received = line.takeAll(job.size()); });
    Ran ran = tavio(
        {"raw", "all.bin", "--to", "tty:" + line.path() + "?baud=115200", "--timeout", kLong});
    printer.join();
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "sent, unconfirmed: 51200 bytes\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_TRUE(received == job);
}

TEST_F(Printers, OnASerialLineMustBeOnADevice) {
    Ran ran = tavio({"cut", "--to", "tty:missing"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "nothing sent, safe to repeat\n");
    EXPECT_EQ(ran.err, "tavio: missing cannot be opened: No such file or directory\n");
}

}  // namespace
}  // namespace tavio::test
