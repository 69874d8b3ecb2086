// The small parts of the server.
#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

#include "tools/tavio-printer/device/receive_buffer.h"
#include "tools/tavio-printer/device/test_device.h"
#include "tools/tavio-printer/doors/listen_address.h"
#include "tools/tavio-printer/line_output.h"
#include "tools/tavio-printer/program.h"

namespace tavio::virtual_printer::testing {
namespace {

TEST(ReceiveBuffer, TellsLossesWhereTheyWere) {
    ReceiveBuffer buffer(10);
    EXPECT_TRUE(buffer.empty());
    buffer.add(bytesOf("abc"));
    buffer.addLoss(2);
    buffer.add(bytesOf("de"));
    buffer.addLoss(1);
    buffer.addLoss(3);
    EXPECT_EQ(buffer.room(), 5U);

    EXPECT_EQ(buffer.takeLoss(), 0U);
    EXPECT_EQ(textOf(buffer.front()), "abc");
    buffer.drop(1);
    EXPECT_EQ(textOf(buffer.front()), "bc");
    buffer.drop(2);
    EXPECT_TRUE(buffer.front().empty());
    EXPECT_EQ(buffer.takeLoss(), 2U);
    EXPECT_EQ(buffer.takeLoss(), 0U);
    EXPECT_EQ(textOf(buffer.front()), "de");
    buffer.drop(2);
    EXPECT_FALSE(buffer.empty());
    EXPECT_EQ(buffer.takeLoss(), 4U);
    EXPECT_TRUE(buffer.empty());
}

TEST(ReceiveBuffer, TakesNoMoreThanItHasRoomFor) {
    ReceiveBuffer buffer(4);
    buffer.add(bytesOf("abcdef"));
    EXPECT_EQ(buffer.size(), 4U);
    buffer.drop(3);
    buffer.add(bytesOf("xyz!"));
    EXPECT_EQ(textOf(buffer.front()), "d");
    buffer.drop(1);
    EXPECT_EQ(textOf(buffer.front()), "xyz");
}

TEST(ReceiveBuffer, NoLossIsForgottenWhenThereAreTooManyPlaces) {
    ReceiveBuffer buffer(ReceiveBuffer::kMaxLosses * 2);
    const std::uint64_t places = ReceiveBuffer::kMaxLosses + 100;
    for (std::uint64_t i = 0; i < places; ++i) {
        buffer.add(bytesOf("x"));
        buffer.addLoss(1);
    }
    std::uint64_t lost = 0;
    std::uint64_t told = 0;
    std::size_t bytes = 0;
    while (!buffer.empty()) {
        const std::uint64_t count = buffer.takeLoss();
        lost += count;
        told += count == 0 ? 0 : 1;
        bytes += buffer.front().size();
        buffer.drop(buffer.front().size());
    }
    EXPECT_EQ(lost, places);
    EXPECT_EQ(told, ReceiveBuffer::kMaxLosses);
    EXPECT_EQ(bytes, places);
}

TEST(ListenAddress, IsReadInAllItsForms) {
    const auto reads = [](const char* text, const char* host, std::uint16_t port) {
        EXPECT_EQ(parseListenAddress(text, 9100), (ListenAddress{host, port})) << text;
    };
    reads("127.0.0.1", "127.0.0.1", 9100);
    reads("127.0.0.1:0", "127.0.0.1", 0);
    reads("localhost:65535", "localhost", 65535);
    reads("::1", "::1", 9100);
    reads("[::1]", "::1", 9100);
    reads("[fe80::1%eth0]:80", "fe80::1%eth0", 80);
}

TEST(ListenAddress, NothingElseIsRead) {
    for (const char* text :
         {"", ":9100", "a:", "a:x", "a:65536", "a:-1", "a:+1", "a: 1", "a b", "a\n", "[::1", "[]",
          "[]:1", "[::1]x", "[::1]9100", "[a]b]", "a]", "[[a]"}) {
        EXPECT_EQ(parseListenAddress(text, 9100), std::nullopt) << text;
    }
}

TEST(ListenAddress, IsWrittenAsItIsRead) {
    EXPECT_EQ(toText({"127.0.0.1", 80}), "127.0.0.1:80");
    EXPECT_EQ(toText({"::1", 0}), "[::1]:0");
}

DeviceTicket ticketOf(std::string_view stream) {
    TestDevice test;
    test.print(stream);
    return test.tickets.at(0);
}

TEST(TicketLine, TellsSizeInkAndTheFirstProblem) {
    EXPECT_EQ(ticketLine(7, ticketOf(graphics(2) + "<p>")), "ticket 7: 100 x 10 dots, 16 black");
    EXPECT_EQ(ticketLine(8, ticketOf("<PM>" + graphics(1) + "<p>")),
              "ticket 8: 10 x 100 dots, 8 black");
    EXPECT_EQ(ticketLine(9, ticketOf("<LM><X><p>")),
              "ticket 9: 100 x 10 dots, 0 black, 1 problem: unknown command \"<X>\" (at byte 4)");
    EXPECT_EQ(ticketLine(10, ticketOf("<X><Y><p>")),
              "ticket 10: 100 x 10 dots, 0 black, 2 problems: unknown command \"<X>\" (at byte 0)");
}

TEST(StockText, IsForPeople) {
    EXPECT_EQ(stockText(0), "concert, 5.5 x 2 in");
    EXPECT_EQ(stockText(4), "6 x 3.25 in");
    EXPECT_EQ(stockText(7), "11 x 1.328 in");
}

class Pipe {
  public:
    Pipe() { EXPECT_EQ(::pipe2(ends_.data(), O_CLOEXEC), 0); }
    ~Pipe() {
        ::close(ends_[0]);
        if (ends_[1] >= 0) ::close(ends_[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int in() const { return ends_[1]; }
    std::string readAll() {  // ends the writing
        ::close(std::exchange(ends_[1], -1));
        std::string all;
        std::array<char, 4096> buffer{};
        ssize_t count = 0;
        while ((count = ::read(ends_[0], buffer.data(), buffer.size())) > 0) {
            all.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return all;
    }
    void readSome() {
        std::array<char, 40000> buffer{};
        EXPECT_GT(::read(ends_[0], buffer.data(), buffer.size()), 0);
    }

  private:
    std::array<int, 2> ends_{-1, -1};
};

TEST(LineOutput, WritesLinesWithControlCharactersMadeVisible) {
    Pipe pipe;
    LineOutput output(pipe.in());
    output.write("one");
    output.write("t\x1Bwo\n\x7F \xC3\xA4");
    EXPECT_EQ(pipe.readAll(), "one\nt\\x1Bwo\\x0A\\x7F \xC3\xA4\n");
}

TEST(LineOutput, CutsLinesThatAreTooLong) {
    Pipe pipe;
    LineOutput output(pipe.in());
    output.write(std::string(LineOutput::kMaxBytes, 'x'));
    output.write(std::string(LineOutput::kMaxBytes + 1, 'y'));
    EXPECT_EQ(pipe.readAll(), std::string(LineOutput::kMaxBytes, 'x') + "\n" +
                                  std::string(LineOutput::kMaxBytes - 3, 'y') + "...\n");
}

TEST(LineOutput, LeavesLinesOutWhileNobodyReads) {
    Pipe pipe;
    LineOutput output(pipe.in());
    for (int i = 0; i < 5000; ++i) output.write(std::string(100, 'x'));  // it would block
    pipe.readSome();
    output.write("again");
    const std::string left = pipe.readAll();
    EXPECT_LT(left.size(), 200'000U);
    EXPECT_TRUE(left.ends_with("xxx\nagain\n"));
}

TEST(LineOutput, DoesWithoutAReader) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    ::signal(SIGPIPE, SIG_IGN);
    LineOutput output(ends[1]);
    output.write("nobody");
    output.write("reads");
    ::close(ends[1]);
    LineOutput closed(-1);
    closed.write("nowhere");
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
