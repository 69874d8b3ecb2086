// Clients over real sockets.
#include <atomic>
#include <cerrno>
#include <future>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tools/tavio-printer/doors/server_bench.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

DeviceSettings withReply(const std::string& text) {
    DeviceSettings settings = smallDevice();
    settings.reply.text = text;
    return settings;
}

DeviceSettings withFaults(const Faults& faults) {
    DeviceSettings settings = smallDevice();
    settings.faults = faults;
    return settings;
}

TEST(TcpServer, SaysWhereItListens) {
    ServerBench bench;
    EXPECT_EQ(bench.server.printAddress(), "tcp://127.0.0.1:" + std::to_string(bench.port()));
    EXPECT_NE(bench.port(), 0);
    EXPECT_EQ(bench.server.serialAddress(), "");
}

TEST(TcpServer, PrintsAJobHoweverItIsCut) {
    const std::uint64_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::string job;
    while (job.size() < 300'000) {
        job += "<RC1,1>";
        job += graphics(random() % 3000, static_cast<Byte>(random()));
    }
    job += "<p>";
    ServerBench bench;
    TcpClient client(bench.port());
    for (std::string_view rest = job; !rest.empty();) {
        const std::size_t size = std::min<std::size_t>(rest.size(), 1 + random() % 20'000);
        client.send(rest.substr(0, size));
        rest.remove_prefix(size);
    }
    client.endSending();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_EQ(client.error, 0);
    ASSERT_EQ(bench.ticketCount(), 1U);
    EXPECT_EQ(bench.streams(1)[0], job);
}

TEST(TcpServer, EndsItsSideWhenAllIsPrinted) {
    ServerBench bench(onAnyPort(withReply("ok\n")));
    TcpClient client(bench.port());
    client.send("a<p>b");
    client.endSending();
    EXPECT_EQ(client.readToEnd(), "ok\nok\n");
    EXPECT_EQ(client.error, 0);
    EXPECT_EQ(bench.streams(2), (Lines{"a<p>", "b"}));
}

TEST(TcpServer, AnswersAfterEachTicket) {
    ServerBench bench(onAnyPort(withReply("ok")));
    TcpClient client(bench.port());
    client.send("x<p>");
    EXPECT_EQ(client.read(2), "ok");
    client.send("x<p>x<q>");
    EXPECT_EQ(client.read(4), "okok");
}

TEST(TcpServer, AnswersASilentClientAndPrintsNothing) {
    ServerBench bench(onAnyPort(withReply("ready")));
    {
        TcpClient client(bench.port());
        EXPECT_EQ(client.read(5), "ready");
    }
    TcpClient next(bench.port());
    next.send("x");
    next.endSending();
    next.readToEnd();
    EXPECT_EQ(bench.streams(1), (Lines{"x"}));
    EXPECT_EQ(bench.tickets(1)[0].connection, 2U);
}

TEST(TcpServer, AnswersWithoutAReaderDoNotHoldItUp) {
    DeviceSettings settings = withReply(std::string(4000, 'r'));
    ServerBench bench(onAnyPort(settings));
    TcpClient client(bench.port());
    std::string job;
    for (int i = 0; i < 3000; ++i) job += "<p>";
    client.send(job);
    bench.tickets(3000);
    client.endSending();
    EXPECT_GE(client.readToEnd().size(), 4'000'000U);
    EXPECT_EQ(client.error, 0);
}

TEST(TcpServer, AllAnswersArriveBeforeTheEnd) {
    ServerBench bench(onAnyPort(withReply(std::string(4000, 'r'))));
    TcpClient client(bench.port());
    std::string job;
    for (int i = 0; i < 500; ++i) job += "<p>";
    client.send(job);
    client.endSending();
    bench.tickets(500);
    EXPECT_EQ(client.readToEnd().size(), 2'000'000U);
    EXPECT_EQ(client.error, 0);
}

TEST(TcpServer, AnswersThatAClientLeftBehindAreForNobodyElse) {
    ServerBench bench(onAnyPort(withReply(std::string(4000, 'r'))));
    TcpClient client(bench.port());
    std::string job;
    for (int i = 0; i < 1000; ++i) job += "<p>";
    client.send(job);
    bench.tickets(1000);
    client.reset();
    TcpClient next(bench.port());
    next.send("<p>");
    next.endSending();
    EXPECT_EQ(next.readToEnd().size(), 4000U);
}

TEST(TcpServer, WhatAResetClientSentIsPrinted) {
    ServerBench bench;
    TcpClient client(bench.port());
    client.send("<p>ab<RC1");
    ASSERT_TRUE(bench.hasReceived(9));
    client.reset();
    EXPECT_EQ(bench.streams(2), (Lines{"<p>", "ab<RC1"}));
    EXPECT_EQ(linesOf(bench.tickets(2)[1].problems),
              (Lines{"2: the stream ends inside a command: \"<RC1\""}));
    EXPECT_TRUE(eventually([&] { return !bench.server.state().connected; }));
}

TEST(TcpServer, AnotherClientWaits) {
    ServerBench bench;
    TcpClient first(bench.port());
    ASSERT_TRUE(bench.isConnected());
    TcpClient second(bench.port());
    second.send("second<p>");
    second.endSending();
    first.send("first<p>");
    first.endSending();
    EXPECT_EQ(second.readToEnd(), "");
    EXPECT_EQ(second.error, 0);
    EXPECT_EQ(bench.streams(2), (Lines{"first<p>", "second<p>"}));
}

TEST(TcpServer, WithOneClientAnotherIsTurnedAway) {
    PrintServerSettings settings = onAnyPort(withReply("ok"));
    settings.oneClient = true;
    ServerBench bench(settings);
    TcpClient first(bench.port());
    ASSERT_TRUE(bench.isConnected());
    for (int i = 0; i < 3; ++i) {
        TcpClient second(bench.port());
        EXPECT_EQ(second.readToEnd(), "");
        EXPECT_EQ(second.error, ECONNRESET);
    }
    first.send("first<p>");
    EXPECT_EQ(first.read(2), "ok");
    first.endSending();
    first.readToEnd();
    ASSERT_TRUE(eventually([&] { return !bench.server.state().connected; }));
    TcpClient third(bench.port());
    third.send("third<p>");
    EXPECT_EQ(third.read(2), "ok");
    EXPECT_EQ(bench.streams(2), (Lines{"first<p>", "third<p>"}));
}

TEST(TcpServer, ADeafPrinterHasTheSenderFeelIt) {
    ServerBench bench(onAnyPort(withFaults({.neverRead = true})));
    TcpClient client(bench.port());
    ASSERT_TRUE(bench.isConnected());
    EXPECT_LT(client.sendUntilItBlocks(std::string(100'000, 'x')), std::size_t{16} << 20U);
    EXPECT_EQ(bench.server.state().received, 0U);
    client.reset();
    EXPECT_TRUE(eventually([&] { return !bench.server.state().connected; }));
    EXPECT_EQ(bench.ticketCount(), 0U);
}

TEST(TcpServer, HowSoonItIsFeltIsASetting) {
    std::vector<std::size_t> sent;
    for (const std::size_t buffer : {4'000U, 150'000U}) {
        PrintServerSettings settings = onAnyPort(withFaults({.neverRead = true}));
        settings.socketBuffer = buffer;
        ServerBench bench(settings);
        TcpClient client(bench.port());
        ASSERT_TRUE(bench.isConnected());
        client.holdLittle();
        sent.push_back(client.sendUntilItBlocks(std::string(1000, 'x')));
        client.reset();
    }
    EXPECT_LT(sent[0], sent[1]);
}

TEST(TcpServer, ResetsAfterExactlySoManyBytes) {
    ServerBench bench(onAnyPort(withFaults({.resetAfter = 1000})));
    for (std::size_t n = 1; n <= 2; ++n) {
        TcpClient client(bench.port());
        client.send(std::string(5000, 'x'));
        client.readToEnd();
        EXPECT_EQ(client.error, ECONNRESET);
        EXPECT_EQ(bench.streams(n)[n - 1], std::string(1000, 'x'));
    }
}

TEST(TcpServer, ClosesAfterExactlySoManyBytes) {
    ServerBench bench(onAnyPort(withFaults({.closeAfter = 1000})));
    for (const std::size_t size : {1000U, 1500U, 9000U}) {
        TcpClient client(bench.port());
        client.send(std::string(size, 'x'));
        EXPECT_EQ(client.readToEnd(), "");
        EXPECT_EQ(client.error, 0);
    }
    const std::string kept(1000, 'x');
    EXPECT_EQ(bench.streams(3), (Lines{kept, kept, kept}));
}

TEST(TcpServer, OutOfPaperItWaitsForMore) {
    ServerBench bench(onAnyPort(withFaults({.paperOutAfter = 1})));
    TcpClient client(bench.port());
    client.send("a<p>b<p>");
    client.endSending();
    ASSERT_TRUE(bench.hasReceived(8));
    EXPECT_EQ(bench.streams(1), (Lines{"a<p>"}));
    EXPECT_TRUE(bench.server.state().paperOut);
    EXPECT_EQ(bench.server.state().waitingBytes, 4U);
    bench.server.loadPaper();
    EXPECT_EQ(bench.streams(2), (Lines{"a<p>", "b<p>"}));
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_EQ(client.error, 0);
}

TEST(TcpServer, AClientThatLeavesDuringThePaperChangeIsPrintedAfterIt) {
    ServerBench bench(onAnyPort(withFaults({.paperOutAfter = 1})));
    TcpClient client(bench.port());
    client.send("a<p>b");
    ASSERT_TRUE(bench.hasReceived(5));
    client.reset();
    ASSERT_TRUE(eventually([&] { return !bench.server.state().connected; }));
    TcpClient next(bench.port());
    next.send("c<p>");
    bench.server.loadPaper();
    bench.tickets(2);
    bench.server.loadPaper();
    EXPECT_EQ(bench.streams(3), (Lines{"a<p>", "b", "c<p>"}));
}

TEST(TcpServer, TakesTheTimeThatPhysicsTake) {
    DeviceSettings settings = smallDevice();
    settings.physics.bytesPerSecond = 50'000;
    settings.physics.millimetresPerSecond = 100;  // 20 ms for a ticket
    ServerBench bench(onAnyPort(settings));
    const auto start = std::chrono::steady_clock::now();
    TcpClient client(bench.port());
    const std::string job = graphics(5000, 0) + "<p><p>";
    client.send(job);
    client.endSending();
    EXPECT_EQ(client.readToEnd(), "");
    // 100 ms on the link, of which an idle one may have saved up 50, and twice 20 ms of paper.
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(90));
    EXPECT_EQ(bench.streams(2)[0] + bench.streams(2)[1], job);
}

TEST(TcpServer, ListensOnIpv6) {
    PrintServerSettings settings = onAnyPort();
    settings.listen = ListenAddress{"::1", 0};
    std::unique_ptr<ServerBench> bench;
    try {
        bench = std::make_unique<ServerBench>(settings);
    } catch (const std::runtime_error&) {
        GTEST_SKIP() << "there is no IPv6 here";
    }
    EXPECT_TRUE(bench->server.printAddress().starts_with("tcp://[::1]:"));
    TcpClient client(bench->port(), "::1");
    client.send("x<p>");
    EXPECT_EQ(bench->streams(1), (Lines{"x<p>"}));
}

// The sentence of the failure to start.
std::string failureOf(const PrintServerSettings& settings) {
    try {
        PrintServer server(settings, nullptr);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "";
}

TEST(TcpServer, APortInUseIsNamed) {
    ServerBench bench;
    PrintServerSettings settings = onAnyPort();
    settings.listen->port = bench.port();
    EXPECT_EQ(failureOf(settings), "cannot listen on 127.0.0.1:" + std::to_string(bench.port()) +
                                       ": another program listens there");
}

TEST(TcpServer, AnAddressThatIsNotOursIsNamed) {
    PrintServerSettings settings = onAnyPort();
    settings.listen = ListenAddress{"192.0.2.1", 0};
    EXPECT_EQ(failureOf(settings), "cannot listen on 192.0.2.1:0: Cannot assign requested address");
}

TEST(TcpServer, AFreedPortCanBeUsedAgainAtOnce) {
    PrintServerSettings settings = onAnyPort();
    {
        ServerBench bench;
        settings.listen->port = bench.port();
        TcpClient client(bench.port());
        client.send("<p>");
        bench.tickets(1);
        bench.server.stop();  // the server's side closes first
    }
    EXPECT_EQ(failureOf(settings), "");
}

TEST(TcpServer, StopsWithASilentClientAndOthersWaiting) {
    ServerBench bench;
    TcpClient silent(bench.port());
    ASSERT_TRUE(bench.isConnected());
    TcpClient waiting(bench.port());
    bench.server.stop();
    silent.readToEnd();
    EXPECT_NE(silent.error, EAGAIN);
    TcpClient late(bench.port());
    EXPECT_EQ(late.error, ECONNREFUSED);
    bench.server.stop();
}

TEST(TcpServer, StopsAmidThousandsOfTickets) {
    constexpr int kTickets = 3000;  // in one portion of the connection
    std::atomic<int> count{0};
    std::promise<void> first;
    std::promise<void> stopping;
    const std::shared_future<void> go = stopping.get_future().share();
    PrintServer server(onAnyPort(), [&](const DeviceTicket&) {
        if (++count == 1) first.set_value();
        go.wait();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));  // as long as a picture takes
    });
    const std::string address = server.printAddress();
    TcpClient client(static_cast<std::uint16_t>(std::stoi(address.substr(address.rfind(':') + 1))));
    std::string job;
    for (int ticket = 0; ticket < kTickets; ++ticket) job += "<p>";
    client.send(job);
    first.get_future().wait();
    stopping.set_value();
    server.stop();
    EXPECT_LT(count, kTickets);
}

TEST(TcpServer, FinishesWithTheClientThatIsThere) {
    ServerBench bench(onAnyPort(withReply("ok")));
    TcpClient client(bench.port());
    client.send("x<p>");
    client.endSending();
    ASSERT_TRUE(bench.hasReceived(4));
    bench.server.finish(std::chrono::hours(24));
    EXPECT_EQ(client.readToEnd(), "ok");
    EXPECT_EQ(client.error, 0);
    EXPECT_EQ(TcpClient(bench.port()).error, ECONNREFUSED);
}

TEST(TcpServer, FinishesAtTheLatestWhenTold) {
    ServerBench bench;
    TcpClient silent(bench.port());
    ASSERT_TRUE(bench.isConnected());
    bench.server.finish(milliseconds(10));
    EXPECT_FALSE(TcpClient(bench.port()).isConnected());
}

TEST(TcpServer, BrokenStreamsDoItNoHarm) {
    const std::uint64_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    ServerBench bench(onAnyPort(withReply("ok")));
    for (int i = 0; i < 20; ++i) {
        TcpClient client(bench.port());
        std::string noise(1 + random() % 20'000, ' ');
        for (char& c : noise)
            c = static_cast<char>(random() % 4 == 0 ? "<>\x1Bp"[random() % 4]
                                                    : static_cast<char>(random()));
        client.send(noise);
        if (random() % 2 == 0) {
            client.reset();
        } else {
            client.endSending();
            client.readToEnd();
        }
    }
    TcpClient last(bench.port());
    last.send("alive<p>");
    EXPECT_EQ(last.read(2), "ok");
    const Lines streams = bench.streams(1);
    EXPECT_EQ(streams.back(), "alive<p>");
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
