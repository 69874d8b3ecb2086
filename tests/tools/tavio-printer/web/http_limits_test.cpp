#include <atomic>
#include <list>
#include <random>
#include <string>
#include <string_view>
#include <thread>

#include <gtest/gtest.h>

#include "tools/tavio-printer/tickets/page_tickets.h"
#include "tools/tavio-printer/web/event_stream.h"
#include "tools/tavio-printer/web/http_head.h"
#include "tools/tavio-printer/web/http_listener.h"
#include "tools/tavio-printer/web/raw_http.h"
#include "tools/tavio-printer/web/web_server.h"

namespace tavio::virtual_printer {
namespace {

using test::getRequest;
using test::portOf;
using test::printed;
using test::RawConnection;

using Clock = std::chrono::steady_clock;

// The page's server and clients that ask too much of it.
class HttpLimits : public testing::Test {
  protected:
    static constexpr std::size_t kPages = 20;

    static WebSettings settings() {
        WebSettings settings;
        settings.port = 0;
        settings.maxPages = kPages;
        return settings;
    }

    RawConnection events() const {
        RawConnection stream(port);
        stream.send(getRequest("/events"));
        return stream;
    }

    int statusOf(const std::string& path) const {
        constexpr std::string_view kVersion = "HTTP/1.1 ";
        RawConnection connection(port);
        connection.send(getRequest(path));
        const std::string& answer = connection.readUntil("\r\n\r\n");
        return answer.starts_with(kVersion) ? std::stoi(answer.substr(kVersion.size())) : 0;
    }

    TicketStore store{StoreLimits{}};
    WebServer server{settings(), {}, store};
    std::uint16_t port = portOf(server.url());
};

TEST_F(HttpLimits, ManyPagesGetEachTicketAndTheServerStillAnswers) {
    std::list<RawConnection> pages;
    for (std::size_t page = 0; page < kPages; ++page) {
        pages.push_back(events());
        pages.back().readUntil("event: printer");
    }
    store.add(printed("<p>"));
    for (RawConnection& page : pages) {
        EXPECT_EQ(test::countOf("event: ticket", page.readUntil("\"oldest\"")), 1U);
    }
    EXPECT_EQ(statusOf("/tickets/1.png"), 200);
}

TEST_F(HttpLimits, StopsSoonWithManyPagesOpen) {
    std::list<RawConnection> pages;
    for (std::size_t page = 0; page < kPages; ++page) {
        pages.push_back(events());
        pages.back().readUntil("event: printer");
    }
    RawConnection silent(port);
    RawConnection halfway(port);
    halfway.send("GET / HT");
    const auto begin = Clock::now();
    server.stop();
    // Far more than it takes, far less than any timeout of a connection.
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(4));
    for (RawConnection& page : pages) {
        page.readToEnd();
        EXPECT_TRUE(page.isClosed());
    }
    server.stop();  // again, for nothing
}

TEST_F(HttpLimits, StopsWhileAPageDoesNotReadWhatItAskedFor) {
    std::string job;
    while (job.size() < (std::size_t{8} << 20U)) job += "some text that is no picture ";
    store.add(printed(job + "<p>"));
    RawConnection lazy(port);
    lazy.send(getRequest("/tickets/1.bin"));
    lazy.readUntil("HTTP/1.1 200");
    const auto begin = Clock::now();
    server.stop();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(4));
}

TEST_F(HttpLimits, OnePageMoreIsToldToComeBackAndMayWhenAnotherHasGone) {
    std::list<RawConnection> pages;
    for (std::size_t page = 0; page < kPages; ++page) {
        pages.push_back(events());
        pages.back().readUntil("event: printer");
    }
    RawConnection refused = events();
    const std::string answer = refused.readToEnd();
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 503")) << answer;
    EXPECT_NE(answer.find("Retry-After: 5"), std::string::npos);
    pages.pop_front();
    // The server sees within a moment that the page has gone, long before it next writes to it.
    bool admitted = false;
    const auto until = Clock::now() + EventStream::kMaxSilence * 3 / 4;
    while (!admitted && Clock::now() < until) {
        RawConnection next = events();
        admitted = next.readUntil("\r\n\r\n").starts_with("HTTP/1.1 200");
        if (!admitted) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_TRUE(admitted);
}

TEST_F(HttpLimits, ConnectionsThatSayNothingKeepNobodyWaiting) {
    const auto begin = Clock::now();
    std::list<RawConnection> silent;
    for (std::size_t count = 0; count < HttpListener::kMaxWaiting + 20; ++count) {
        silent.emplace_back(port);
        if (count % 2 == 0) silent.back().send("GET / HTTP/1.1\r\nHost: lo");
    }
    EXPECT_EQ(statusOf("/"), 200);
    // There was no room for the first of them, long before patience with it was over.
    silent.front().readToEnd();
    EXPECT_TRUE(silent.front().isClosed());
    EXPECT_LT(Clock::now() - begin, HttpListener::kTimeout);
}

TEST_F(HttpLimits, AConnectionThatEndsBeforeItsRequestIsClosedAtOnce) {
    const auto begin = Clock::now();
    RawConnection cut(port);
    cut.send("GET / HT");
    cut.finishSending();
    EXPECT_EQ(cut.readToEnd(), "");
    EXPECT_TRUE(cut.isClosed());
    EXPECT_LT(Clock::now() - begin, HttpListener::kTimeout);
}

TEST_F(HttpLimits, ARequestMayComeByteByByte) {
    RawConnection slow(port);
    for (const char character : getRequest("/printer.json")) {
        ASSERT_TRUE(slow.send({&character, 1}));
    }
    EXPECT_TRUE(slow.readToEnd().starts_with("HTTP/1.1 200"));
}

TEST_F(HttpLimits, HeadersThatAreTooLongAreRefused) {
    const std::string begin = "GET / HTTP/1.1\r\nHost: localhost\r\nX-Filler: ";
    RawConnection greedy(port);
    greedy.send(begin + std::string(kMaxHeadBytes + 1 - begin.size(), 'x'));
    EXPECT_TRUE(greedy.readToEnd().starts_with("HTTP/1.1 431"));
    EXPECT_EQ(statusOf("/"), 200);
}

TEST_F(HttpLimits, BodiesAreRefusedUnread) {
    for (const char* header : {"Content-Length: 100000000", "Transfer-Encoding: chunked"}) {
        for (const char* method : {"POST /paper", "PUT /x", "GET /"}) {
            RawConnection connection(port);
            connection.send(std::string(method)
                                .append(" HTTP/1.1\r\nHost: localhost\r\n")
                                .append(header)
                                .append("\r\n\r\n"));
            EXPECT_TRUE(connection.readToEnd().starts_with("HTTP/1.1 413")) << method << header;
        }
    }
}

TEST_F(HttpLimits, OtherMethodsAreRefused) {
    for (const char* method : {"PUT", "DELETE", "PATCH", "OPTIONS", "POST"}) {
        RawConnection connection(port);
        connection.send(
            std::string(method).append(" /tickets/1.png HTTP/1.1\r\nHost: localhost\r\n\r\n"));
        const std::string answer = connection.readToEnd();
        EXPECT_TRUE(answer.starts_with("HTTP/1.1 405")) << method << answer;
        EXPECT_NE(answer.find("Allow: GET, HEAD"), std::string::npos);
    }
}

TEST_F(HttpLimits, HeadSendsNoBodyAndHoldsNoStream) {
    for (const char* path : {"/", "/events"}) {
        RawConnection connection(port);
        connection.send(
            std::string("HEAD ").append(path).append(" HTTP/1.1\r\nHost: localhost\r\n\r\n"));
        const std::string answer = connection.readToEnd();
        EXPECT_TRUE(answer.starts_with("HTTP/1.1 200")) << answer;
        EXPECT_TRUE(answer.ends_with("\r\n\r\n")) << answer;
    }
}

TEST_F(HttpLimits, PartsOfAFileAreNotGiven) {
    store.add(printed(std::string(5000, 'x') + "<p>"));
    RawConnection connection(port);
    std::string ranges = "Range: bytes=0-";
    for (int count = 0; count < 1000; ++count) ranges += ",0-";
    connection.send(getRequest("/tickets/1.bin", ranges + "\r\n"));
    const std::string answer = connection.readToEnd();
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 200")) << answer.substr(0, 200);
    EXPECT_LT(answer.size(), 6000U);
}

TEST_F(HttpLimits, NonsenseIsAnsweredOrClosedAndNeverHarms) {
    const std::string bytes("\x16\x03\x01\x02\0\r\n\r\n", 9);
    for (const std::string& nonsense :
         {bytes, std::string("\r\n\r\n"), std::string("GET\r\n\r\n"),
          std::string("GET / HTTP/9.9\r\n\r\n"), std::string("GET /%zz%0 HTTP/1.1\r\n\r\n"),
          "GET /" + std::string(12000, '/') + " HTTP/1.1\r\nHost: localhost\r\n\r\n",
          "GET /?" + std::string(4000, '&') + " HTTP/1.1\r\nHost: localhost\r\n\r\n",
          std::string("GET / HTTP/1.1\r\nHost: localhost\r\nno colon\r\n: \r\n\r\n")}) {
        RawConnection connection(port);
        connection.send(nonsense);
        connection.readToEnd();
        EXPECT_TRUE(connection.isClosed());
    }
    EXPECT_EQ(statusOf("/"), 200);
}

TEST_F(HttpLimits, RequestsWithRandomFaultsNeverHarm) {
    const auto seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string request =
        getRequest("/tickets/1.json?line=7", "Last-Event-ID: a-1\r\nContent-Length: 0\r\n");
    for (int round = 0; round < 300; ++round) {
        std::string faulty = request;
        for (auto faults = 1 + random() % 4; faults > 0; --faults) {
            const std::size_t at = random() % faulty.size();
            const char character = static_cast<char>(random());
            if (random() % 2 == 0) {
                faulty.at(at) = character;
            } else {
                faulty.insert(at, 1 + random() % 50, character);
            }
        }
        RawConnection connection(port);
        connection.send(faulty + "\r\n\r\n");
        connection.readToEnd();
        ASSERT_TRUE(connection.isClosed()) << faulty;
    }
    EXPECT_EQ(statusOf("/"), 200);
}

TEST_F(HttpLimits, ManyAtOnceAreAllAnswered) {
    store.add(printed("<P1><p>"));
    std::vector<std::thread> threads;
    std::atomic<int> answered{0};
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&] {
            for (int count = 0; count < 25; ++count) {
                if (statusOf("/tickets/1.json") == 200) ++answered;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(answered, 200);
}

}  // namespace
}  // namespace tavio::virtual_printer
