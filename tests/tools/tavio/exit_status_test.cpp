// One exit status for each fate of a job.

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

// Enough to outlast every buffer between here and a peer that does not read.
constexpr std::size_t kMoreThanBuffersHold = std::size_t{8} << 20U;

void readAll(Client& client) {
    client.read();
}

// Returns when the reader has taken all bytes, and is about to wait for more.
void waitUntilRead(const machine::Descriptor& pipe) {
    int unread = 1;
    while (::ioctl(pipe.get(), FIONREAD, &unread) == 0 && unread > 0) ::sched_yield();
}

class ExitStatus : public ToolTest {
  protected:
    // Runs the command to the printer, once with lines and once with an object.
    static std::vector<std::string> to(const SocketPrinter& printer,
                                       std::vector<std::string> arguments, bool json) {
        arguments.insert(arguments.end(), {"--to", printer.target(), "--timeout", "3600"});
        if (json) arguments.emplace_back("--json");
        return arguments;
    }
    static void expectMember(const Ran& ran, const std::string& member) {
        EXPECT_NE(ran.out.find(member), std::string::npos) << ran.out;
    }
};

TEST_F(ExitStatus, Is0WhenAllWasSent) {
    for (const bool json : {false, true}) {
        SocketPrinter printer(readAll);
        const Ran ran = tavio(to(printer, {"cut"}, json));
        EXPECT_EQ(ran.status, 0);
        if (json) expectMember(ran, R"("status":0,"outcome":"sent-unconfirmed")");
        EXPECT_EQ(printer.received(), "<p>");
    }
}

TEST_F(ExitStatus, Is1WhenNothingWasSent) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"print", "missing.png", "--json"},
          {"cut", "--to", "tcp://127.0.0.1:1", "--json"},
          {"cut", "--to", "file:missing/job.bin", "--json"}}) {
        const Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 1);
        expectMember(ran, R"("status":1,"outcome":"nothing-sent")");
    }
}

TEST_F(ExitStatus, Is2WhenTheCommandLineIsWrong) {
    const Ran ran = tavio({"print", "--json"});
    EXPECT_EQ(ran.status, 2);
    expectMember(ran, R"("command":"","status":2,"outcome":"failed","problems":[{"kind":"usage")");
    EXPECT_EQ(tavio({"print", "a.txt", "--unknown"}).out, "") << "nobody asked for an object";
    EXPECT_EQ(tavio({"send", "--bogus", "--", "--json"}).out, "") << "that is a text";
}

TEST_F(ExitStatus, Is3WhenThePrinterHasAPart) {
    writeFile(at("large.bin"), std::string(kMoreThanBuffersHold, 'x'));
    for (const bool json : {false, true}) {
        SocketPrinter printer([](Client& client) { client.read(10'000); });
        const Ran ran = tavio(to(printer, {"raw", "large.bin"}, json));
        EXPECT_EQ(ran.status, 3);
        if (json) {
            expectMember(ran, R"("status":3,"outcome":"partly-sent")");
            expectMember(ran, R"("fate":"partly-sent")");
        }
    }
}

TEST_F(ExitStatus, Is4WhenThePrinterDoesNotConfirm) {
    for (const bool json : {false, true}) {
        SocketPrinter printer(readAll);
        std::vector<std::string> arguments{"cut",       "--confirm", "--to", printer.target(),
                                           "--timeout", "0.3"};
        if (json) arguments.emplace_back("--json");
        const Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 4);
        EXPECT_TRUE(ran.err.starts_with("tavio: ")) << ran.err;
        if (json) {
            expectMember(ran, R"("status":4,"outcome":"sent-unconfirmed")");
            expectMember(ran, R"("remarks":[{"kind":"not-confirmed")");
        }
        EXPECT_EQ(printer.received(), "<p>");
    }
}

TEST_F(ExitStatus, Is0WhenThePrinterConfirms) {
    SocketPrinter printer([](Client& client) {
        client.read(3);
        client.send("printed");
        client.read();
    });
    const Ran ran = tavio(to(printer, {"cut", "--confirm"}, false));
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out,
              "answered by the printer: 3 bytes sent\n"
              "the printer says: printed\n");
}

TEST_F(ExitStatus, Is1WhenThePrinterIsNotReadyAsDemanded) {
    SocketPrinter printer(readAll);
    const Ran ran =
        tavio({"cut", "--ready", "--to", printer.target(), "--timeout", "0.3", "--json"});
    EXPECT_EQ(ran.status, 1);
    expectMember(ran, R"("remarks":[{"kind":"not-ready")");
    EXPECT_EQ(printer.received(), "");
}

TEST_F(ExitStatus, Is1WhenSomethingIsDemandedOfWhatIsNoPrinter) {
    expectRefusal({"cut", "--confirm"},
                  "tavio: ticket.png is not a printer, so it confirms nothing");
    expectRefusal({"cut", "--ready", "--to", "file:job.bin"},
                  "tavio: job.bin is not a printer, so it confirms nothing");
}

TEST_F(ExitStatus, Is5WhenTheOutcomeCannotBeWritten) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    for (const bool json : {false, true}) {
        SocketPrinter printer(readAll);
        const Ran ran =
            tavioInto(::open("/dev/full", O_WRONLY | O_CLOEXEC), to(printer, {"cut"}, json));
        EXPECT_EQ(ran.status, 5);
        EXPECT_EQ(ran.err, "tavio: standard output cannot be written\n");
        EXPECT_EQ(printer.received(), "<p>") << "it has printed";
    }
}

TEST_F(ExitStatus, Is5WhenStandardOutputIsClosed) {
    SocketPrinter printer(readAll);
    Start start;
    start.withoutOutput = true;
    const Ran ran = Running(folder.path(), to(printer, {"cut"}, false), start).finish();
    EXPECT_EQ(ran.status, 5);
    EXPECT_EQ(ran.err, "tavio: standard output cannot be written\n");
    EXPECT_EQ(printer.received(), "<p>") << "nothing else goes to the printer";
}

TEST_F(ExitStatus, Is5WhenAFileWasWrittenAndTheObjectWasNot) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    const Ran ran = tavioInto(::open("/dev/full", O_WRONLY | O_CLOEXEC),
                              {"cut", "--to", "file:job.bin", "--json"});
    EXPECT_EQ(ran.status, 5);
    EXPECT_EQ(readFile(at("job.bin")), "<p>");
}

// A failure before it is not covered up.
TEST_F(ExitStatus, StaysWhatItIsWhenTheOutcomeCannotBeWrittenEither) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    writeFile(at("large.bin"), std::string(kMoreThanBuffersHold, 'x'));
    SocketPrinter printer([](Client& client) { client.read(10'000); });
    const Ran ran = tavioInto(::open("/dev/full", O_WRONLY | O_CLOEXEC),
                              to(printer, {"raw", "large.bin"}, false));
    EXPECT_EQ(ran.status, 3);
}

TEST_F(ExitStatus, Is128AndTheSignalWhenInterrupted) {
    writeFile(at("large.bin"), std::string(kMoreThanBuffersHold, 'x'));
    for (const auto& [number, status] : {std::pair{SIGINT, 130}, {SIGTERM, 143}}) {
        std::promise<void> sending;
        SocketPrinter printer([&](Client& client) {
            client.waitForBytes();
            sending.set_value();
            client.waitForBreak();
        });
        Running running(folder.path(), to(printer, {"raw", "large.bin"}, true));
        sending.get_future().wait();
        running.signal(number);
        const Ran ran = running.finish();
        EXPECT_EQ(ran.status, status);
        EXPECT_EQ(ran.err, "tavio: interrupted\n");
        expectMember(ran, R"("outcome":"partly-sent")");
        expectMember(ran, R"({"kind":"cancelled","sentence":"interrupted"})");
    }
}

TEST_F(ExitStatus, Is128AndTheSignalWhenInterruptedBeforeAnythingIsSent) {
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    for (const auto& [number, status] : {std::pair{SIGINT, 130}, {SIGTERM, 143}}) {
        for (const bool json : {false, true}) {
            std::vector<std::string> arguments{"print", "pipe", "--cut"};
            if (json) arguments.emplace_back("--json");
            Running running(folder.path(), arguments);
            // Opening waits until the tool reads.
            const machine::Descriptor pipe(::open(at("pipe").c_str(), O_WRONLY | O_CLOEXEC));
            if (json) {
                EXPECT_EQ(::write(pipe.get(), "A", 1), 1);
                waitUntilRead(pipe);
            }
            running.signal(number);
            const Ran ran = running.finish();
            EXPECT_EQ(ran.status, status);
            EXPECT_EQ(ran.err, "tavio: interrupted, nothing was sent\n");
            EXPECT_EQ(ran.out.empty(), !json);
            if (json) expectMember(ran, R"("outcome":"nothing-sent")");
        }
    }
}

}  // namespace
}  // namespace tavio::test
