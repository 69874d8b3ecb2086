// The real program tavio-printer.
#include <csignal>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "tools/tavio-printer/doors/server_bench.h"
#include "tools/tavio-printer/printer_process.h"

namespace tavio::virtual_printer::testing {
namespace {

using test::readFile;
using test::TemporaryFolder;

// Arguments after those that every run in a test needs.
std::vector<std::string> onFreePorts(const std::vector<std::string>& more) {
    std::vector<std::string> all{"--listen", "127.0.0.1:0"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::string hostAndPort(std::uint16_t port) {
    return std::string("127.0.0.1:").append(std::to_string(port));
}

// Prints a job and waits until the printer has ended its side. Returns its answers.
std::string print(std::uint16_t port, const std::string& job) {
    TcpClient client(port);
    client.send(job);
    client.endSending();
    std::string answers = client.readToEnd();
    EXPECT_EQ(client.error, 0);
    return answers;
}

TEST(PrinterProgram, SaysWhereItListensAndPrintsIntoAFolder) {
    const TemporaryFolder folder;
    const std::string out = folder / "tickets";
    PrinterProcess process(onFreePorts({"--page", "127.0.0.1:0", "--out", out}));
    const std::uint16_t port = process.printPort();
    const std::string page = process.lineOf("page");
    EXPECT_TRUE(page.starts_with("http://127.0.0.1:")) << page;
    EXPECT_TRUE(page.ends_with("/")) << page;

    const std::string job = "<RC1,2>" + graphics(3) + "<p>";
    EXPECT_EQ(print(port, job), "");
    EXPECT_EQ(process.line(), "ticket 1: 1650 x 600 dots, 24 black");
    EXPECT_EQ(readFile(out + "/ticket-000001.bin"), job);
    EXPECT_TRUE(readFile(out + "/ticket-000001.png").starts_with("\x89PNG\r\n"));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.errors(), "");
}

TEST(PrinterProgram, TheTicketIsThatOfTheOptions) {
    PrinterProcess process(onFreePorts(
        {"--no-page", "--stock", "cinema", "--resolution", "200", "--orientation", "portrait"}));
    print(process.printPort(), graphics(3) + "<p><LM>" + graphics(1) + "<G9>x");
    EXPECT_EQ(process.line(), "ticket 1: 650 x 400 dots, 24 black");
    const std::string second = process.line();
    EXPECT_TRUE(second.starts_with("ticket 2: 400 x 650 dots, ")) << second;
    EXPECT_TRUE(second.ends_with(", 1 problem: graphics cut short: 1 of 9 bytes (at byte 9)"))
        << second;
}

TEST(PrinterProgram, EndsAtASignalWhateverGoesOn) {
    for (const int number : {SIGINT, SIGTERM}) {
        PrinterProcess process(
            onFreePorts({"--page", "127.0.0.1:0", "--tty", "--paper", "1", "--speed", "1"}));
        const std::uint16_t port = process.printPort();
        process.lineOf("page");
        EXPECT_TRUE(process.lineOf("serial").starts_with("tty:/dev/pts/"));
        TcpClient client(port);
        client.send("<p><p>half<RC");
        process.lineOf("ticket 1");
        process.signal(number);
        EXPECT_EQ(process.wait(), 0);
        EXPECT_EQ(process.errors(), "");
    }
}

TEST(PrinterProgram, ASignalLoadsPaper) {
    PrinterProcess process(onFreePorts({"--no-page", "--paper", "1"}));
    TcpClient client(process.printPort());
    client.send("<p><p>");
    process.lineOf("ticket 1");
    process.signal(SIGUSR1);
    process.lineOf("ticket 2");
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST(PrinterProgram, EndsByItselfAfterSoManyTickets) {
    PrinterProcess process(onFreePorts(
        {"--no-page", "--tickets", "2", "--reply", "ok\\n", "--reply-delay", "0.2", "--quiet"}));
    const std::uint16_t port = process.printPort();
    EXPECT_EQ(print(port, "<p>"), "ok\n");
    EXPECT_EQ(print(port, "<p>"), "ok\n");
    EXPECT_EQ(process.line(), "");
    EXPECT_EQ(process.wait(), 0);
}

TEST(PrinterProgram, AClientThatStaysDoesNotKeepItFromEnding) {
    PrinterProcess process(onFreePorts({"--no-page", "--tickets", "1", "--reply", "ok"}));
    TcpClient client(process.printPort());
    client.send("<p>");
    EXPECT_EQ(client.readToEnd(), "ok");
    EXPECT_EQ(process.wait(), 0);
}

TEST(PrinterProgram, DoesWithoutAReaderOfWhatItSays) {
    PrinterProcess process(onFreePorts({"--no-page", "--reply", "ok"}));
    const std::uint16_t port = process.printPort();
    process.closeOutput();
    EXPECT_EQ(print(port, "<p><p>"), "okok");
    EXPECT_EQ(print(port, "<p>"), "ok");
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
}

TEST(PrinterProgram, PrintsFromAPseudoTerminal) {
    const TemporaryFolder folder;
    const std::string link = folder / "printer";
    PrinterProcess process({"--no-listen", "--no-page", "--tty", link});
    const std::string serial = process.lineOf("serial");
    EXPECT_EQ(serial, "tty:" + std::filesystem::read_symlink(link).string());
    {
        std::ofstream device(link, std::ios::binary);
        device << graphics(2) << "<p>";
    }
    EXPECT_EQ(process.line(), "ticket 1: 1650 x 600 dots, 16 black");
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST(PrinterProgram, APortInUseEndsItWithASentence) {
    PrinterProcess first(onFreePorts({"--page", "127.0.0.1:0"}));
    const std::uint16_t port = first.printPort();
    const std::string page = first.lineOf("page");

    const PrinterRun second = runPrinter({"--listen", hostAndPort(port), "--no-page"});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err, "tavio-printer: cannot listen on " + hostAndPort(port) +
                              ": another program listens there\n");

    std::string pageAddress = page.substr(std::string("http://").size());
    pageAddress.pop_back();
    const PrinterRun third = runPrinter(onFreePorts({"--page", pageAddress}));
    EXPECT_EQ(third.status, 1);
    EXPECT_EQ(third.out, "");
    EXPECT_TRUE(third.err.starts_with("tavio-printer: cannot listen on 127.0.0.1")) << third.err;
}

TEST(PrinterProgram, AFolderThatCannotBeMadeEndsItWithASentence) {
    const TemporaryFolder folder;
    test::writeFile(folder / "file", "");
    const PrinterRun ran = runPrinter(onFreePorts({"--no-page", "--out", folder / "file"}));
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_TRUE(ran.err.starts_with("tavio-printer: ")) << ran.err;
    EXPECT_EQ(ran.err.find('\n'), ran.err.size() - 1) << ran.err;
}

TEST(PrinterProgram, BadUsageIsExitStatus2) {
    const PrinterRun ran = runPrinter({"--stock", "postcard"});
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err,
              "tavio-printer: --stock: \"postcard\" is no stock: give 0 to 8, concert, cinema, "
              "creditcard or receipt (tavio-printer --help tells more)\n");
}

TEST(PrinterProgram, HelpNamesEveryOptionAndGivesAnExample) {
    PrinterProcess process({"--help"});
    std::string help;
    for (int i = 0; i < 100; ++i) help += process.line() + "\n";
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.errors(), "");
    for (const char* option :
         {"--listen",     "--no-listen",   "--tty",           "--page",       "--no-page",
          "--stock",      "--resolution",  "--orientation",   "--out",        "--keep",
          "--keep-bytes", "--tickets",     "--quiet",         "--reply",      "--reply-delay",
          "--buffer",     "--drop",        "--socket-buffer", "--rate",       "--speed",
          "--paper",      "--logo-memory", "--one-client",    "--never-read", "--reset-after",
          "--close-after"}) {
        EXPECT_NE(help.find(option), std::string::npos) << option;
    }
    EXPECT_NE(help.find("Example:\n  tavio-printer "), std::string::npos) << help;
}

TEST(PrinterProgram, TellsItsVersion) {
    const PrinterRun ran = runPrinter({"--version"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.out.starts_with("tavio-printer ")) << ran.out;
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
