#include "tools/tavio-printer/web/web_server.h"

#include <atomic>
#include <httplib.h>
#include <thread>

#include <gtest/gtest.h>

#include "tools/tavio-printer/tickets/page_tickets.h"
#include "tools/tavio-printer/web/raw_http.h"

namespace tavio::virtual_printer {
namespace {

using test::countOf;
using test::getRequest;
using test::portOf;
using test::printed;
using test::RawConnection;

class WebServers : public testing::Test {
  protected:
    static WebSettings settings(std::size_t maxPages = 32) {
        WebSettings settings;
        settings.port = 0;
        settings.maxPages = maxPages;
        return settings;
    }

    PrinterPanel panel() {
        PrinterPanel panel;
        panel.settings.size = {600, 1650, 300};
        panel.stock = "concert";
        panel.printAddress = "tcp://127.0.0.1:9100";
        panel.state = [this] {
            DeviceState state;
            state.paperOut = paperOut;
            return state;
        };
        panel.loadPaper = [this] { paperOut = false; };
        return panel;
    }

    httplib::Client client() const {
        httplib::Client made("127.0.0.1", port);
        made.set_read_timeout(60);
        return made;
    }

    RawConnection events(std::string_view after = "") const {
        RawConnection stream(port);
        stream.send(getRequest(std::string("/events?after=").append(after)));
        return stream;
    }

    std::atomic<bool> paperOut{true};
    TicketStore store{StoreLimits{}};
    WebServer server{settings(), panel(), store};
    std::uint16_t port = portOf(server.url());
};

TEST_F(WebServers, SendsThePageAndAllThatBelongsToIt) {
    auto http = client();
    const auto page = http.Get("/");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->status, 200);
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_TRUE(page->body.starts_with("<!doctype html>"));
    const auto script = http.Get("/app.js");
    ASSERT_TRUE(script);
    EXPECT_EQ(script->get_header_value("Content-Type"), "text/javascript; charset=utf-8");
    const auto style = http.Get("/style.css");
    ASSERT_TRUE(style);
    EXPECT_EQ(style->get_header_value("Content-Type"), "text/css; charset=utf-8");
    const auto icon = http.Get("/favicon.svg");
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->get_header_value("Content-Type"), "image/svg+xml");
    EXPECT_TRUE(icon->body.ends_with("</svg>\n"));
}

TEST_F(WebServers, EveryAnswerForbidsWhatThePageDoesNotNeed) {
    auto http = client();
    for (const char* path : {"/", "/app.js", "/nothing", "/printer.json", "/tickets/1.png"}) {
        const auto answer = http.Get(path);
        ASSERT_TRUE(answer) << path;
        EXPECT_TRUE(answer->get_header_value("Content-Security-Policy")
                        .starts_with("default-src 'none'; script-src 'self';"));
        EXPECT_EQ(answer->get_header_value("X-Content-Type-Options"), "nosniff");
        EXPECT_EQ(answer->get_header_value("Cross-Origin-Resource-Policy"), "same-origin");
        EXPECT_EQ(answer->get_header_value("Cache-Control"), "no-store");
    }
}

TEST_F(WebServers, SendsPictureBytesAndCommandsOfATicket) {
    const DeviceTicket ticket = printed("<RC1,2><G1>\xFF<p>");
    store.add(ticket);
    auto http = client();
    const auto png = http.Get("/tickets/1.png");
    ASSERT_TRUE(png);
    EXPECT_EQ(png->get_header_value("Content-Type"), "image/png");
    EXPECT_EQ(test::dotsOf({png->body.begin(), png->body.end()}), ticket.ticket.toText());
    EXPECT_EQ(png->get_header_value("Content-Disposition"),
              "inline; filename=\"ticket-000001.png\"");
    EXPECT_EQ(http.Get("/tickets/1.png?download")->get_header_value("Content-Disposition"),
              "attachment; filename=\"ticket-000001.png\"");

    const auto bytes = http.Get("/tickets/1.bin");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->body, "<RC1,2><G1>\xFF<p>");
    EXPECT_EQ(bytes->get_header_value("Content-Type"), "application/octet-stream");
    EXPECT_EQ(bytes->get_header_value("Content-Disposition"),
              "attachment; filename=\"ticket-000001.bin\"");

    const auto json = http.Get("/tickets/1.json");
    ASSERT_TRUE(json);
    EXPECT_EQ(json->get_header_value("Content-Type"), "application/json");
    EXPECT_NE(json->body.find(R"("lineCount":3)"), std::string::npos) << json->body;
    EXPECT_NE(
        http.Get("/tickets/1.json?line=2")
            ->body.find(R"("commands":[{"offset":12,"command":"\u003cp\u003e","meaning":"cut"}])"),
        std::string::npos);
}

TEST_F(WebServers, SendsLargeFilesWhole) {
    std::string job;
    while (job.size() < (std::size_t{8} << 20U)) job += "<P" + std::to_string(job.size()) + ">";
    job += "<p>";
    store.add(printed(job));
    const auto bytes = client().Get("/tickets/1.bin");
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(bytes->body == job);
}

TEST_F(WebServers, SaysWhatIsNotThere) {
    store.add(printed("<p>"));
    auto http = client();
    for (const char* path :
         {"/index.html", "/tickets/", "/tickets/2.png", "/tickets/0.png", "/tickets/1",
          "/tickets/1.gif", "/tickets/x.png", "/tickets/1x.png", "/tickets/-1.png",
          "/tickets/18446744073709551617.png", "/tickets/1.png.bin", "/tickets/../app.js",
          "/%2e%2e/etc/passwd", "//app.js"}) {
        const auto answer = http.Get(path);
        ASSERT_TRUE(answer) << path;
        EXPECT_EQ(answer->status, 404) << path;
        EXPECT_TRUE(answer->body.ends_with(".\n")) << answer->body;
    }
}

TEST_F(WebServers, SaysWhenTheBytesWereTooMany) {
    StoreLimits tight;
    tight.bytes = 1000;
    TicketStore small(tight);
    small.add(printed(std::string(3000, 'x') + "<p>"));
    const WebServer another(settings(), panel(), small);
    httplib::Client http("127.0.0.1", portOf(another.url()));
    EXPECT_EQ(http.Get("/tickets/1.bin")->status, 404);
    EXPECT_EQ(http.Get("/tickets/1.png")->status, 200);
    EXPECT_EQ(http.Get("/tickets/1.json")->status, 200);
}

TEST_F(WebServers, LoadsPaperForItsOwnPage) {
    auto http = client();
    const httplib::Headers own = {{"Origin", "http://127.0.0.1:" + std::to_string(port)},
                                  {"Sec-Fetch-Site", "same-origin"}};
    const auto answer = http.Post("/paper", own, "", "text/plain");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 204);
    EXPECT_FALSE(paperOut);
}

TEST_F(WebServers, LoadsNoPaperForOthers) {
    auto http = client();
    const std::vector<httplib::Headers> others = {{{"Origin", "http://evil.example"}},
                                                  {{"Origin", "null"}},
                                                  {{"Sec-Fetch-Site", "cross-site"}},
                                                  {{"Host", "evil.example"}}};
    for (const httplib::Headers& headers : others) {
        const auto answer = http.Post("/paper", headers, "", "text/plain");
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 403);
    }
    EXPECT_EQ(http.Get("/paper")->status, 404);
    EXPECT_TRUE(paperOut);
}

TEST_F(WebServers, AnswersToNoForeignName) {
    auto http = client();
    EXPECT_EQ(http.Get("/", {{"Host", "evil.example"}})->status, 403);
    EXPECT_EQ(http.Get("/", {{"Host", "localhost:1234"}})->status, 200);
    RawConnection without(port);
    without.send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(without.readToEnd().starts_with("HTTP/1.1 403"));
}

TEST_F(WebServers, SendsTicketsAsTheyComeAndEndsWithTheStore) {
    RawConnection stream = events();
    stream.readUntil("event: state");
    store.add(printed("<P1><p>"));
    stream.readUntil("\"id\":1,");
    store.add(printed("<P1><p>"));
    const std::string text = stream.readUntil("\"id\":2,");
    EXPECT_NE(text.find("Content-Type: text/event-stream"), std::string::npos);
    EXPECT_EQ(countOf("event: ticket", text), 2U);
    store.stop();
    EXPECT_TRUE(stream.readToEnd().ends_with("0\r\n\r\n"));
}

TEST_F(WebServers, AReconnectMissesNothingAndRepeatsNothing) {
    std::string run;
    {
        RawConnection stream = events();
        store.add(printed("<p>"));
        const std::string& text = stream.readUntil("\"oldest\"");
        run = text.substr(text.find("id: ") + 4, 8);
    }
    store.add(printed("<p>"));
    store.add(printed("<p>"));
    RawConnection header(port);
    header.send(getRequest("/events", "Last-Event-ID: " + run + "-1\r\n"));
    for (RawConnection* again : {&header}) {
        const std::string text = again->readUntil("event: state");
        EXPECT_EQ(countOf("event: ticket", text), 2U) << text;
        EXPECT_NE(text.find("id: " + run + "-2\n"), std::string::npos);
        EXPECT_NE(text.find("id: " + run + "-3\n"), std::string::npos);
        EXPECT_EQ(countOf("event: reset", text), 0U);
    }
    RawConnection parameter = events(run + "-1");
    EXPECT_EQ(countOf("event: ticket", parameter.readUntil("event: state")), 2U);
}

TEST_F(WebServers, AnotherRunTellsThePageToStartAfresh) {
    store.add(printed("<p>"));
    RawConnection first = events();
    const std::string text = first.readUntil("\"oldest\"");
    const std::string id = text.substr(text.find("id: ") + 4, 10);
    TicketStore others{StoreLimits{}};
    others.add(printed("<p>"));
    const WebServer restarted(settings(), panel(), others);
    RawConnection again(portOf(restarted.url()));
    again.send(getRequest("/events?after=" + id));
    EXPECT_EQ(countOf("event: reset", again.readUntil("event: state")), 1U);
}

TEST_F(WebServers, TheUrlNamesAnAddressThatABrowserCanOpen) {
    EXPECT_EQ(server.url(), "http://127.0.0.1:" + std::to_string(port) + "/");
    WebSettings everywhere = settings();
    everywhere.address = "0.0.0.0";
    const WebServer another(everywhere, panel(), store);
    EXPECT_TRUE(another.url().starts_with("http://127.0.0.1:"));
    httplib::Client http("127.0.0.1", portOf(another.url()));
    EXPECT_EQ(http.Get("/", {{"Host", "printer.example"}})->status, 200);
}

TEST_F(WebServers, RefusesAPortThatIsTakenAndAnAddressThatIsNone) {
    WebSettings taken = settings();
    taken.port = port;
    const auto reason = [&](const WebSettings& wanted) -> std::string {
        try {
            const WebServer another(wanted, panel(), store);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(reason(taken), "cannot listen on 127.0.0.1:" + std::to_string(port) +
                                 ": another program listens there");
    WebSettings nowhere = settings();
    nowhere.address = "no address";
    EXPECT_TRUE(reason(nowhere).starts_with("cannot listen on no address:0: "));
}

}  // namespace
}  // namespace tavio::virtual_printer
