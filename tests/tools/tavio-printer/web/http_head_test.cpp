#include "tools/tavio-printer/web/http_head.h"

#include <gtest/gtest.h>

namespace tavio::virtual_printer {
namespace {

TEST(HttpHead, EndsBehindItsBlankLine) {
    EXPECT_EQ(headEnd("GET / HTTP/1.1\r\n\r\n"), 18U);
    EXPECT_EQ(headEnd("GET / HTTP/1.1\r\nHost: a\r\n\r\nbody"), 27U);
    EXPECT_EQ(headEnd("GET / HTTP/1.1\r\nHost: a\r\n\r"), std::string_view::npos);
    EXPECT_EQ(headEnd("GET / HTTP/1.1\n\n"), std::string_view::npos);
    EXPECT_EQ(headEnd(""), std::string_view::npos);
}

TEST(HttpHead, LosesTheHeadersThatAskForPartsAndCompression) {
    EXPECT_EQ(withoutCostlyHeaders("GET / HTTP/1.1\r\nHost: a\r\nRANGE: bytes=0-,0-\r\n"
                                   "Accept-Encoding: gzip\r\nIf-Range: x\r\nAccept: b\r\n\r\n"),
              "GET / HTTP/1.1\r\nHost: a\r\nAccept: b\r\n\r\n");
}

TEST(HttpHead, KeepsWhatOnlyLooksLikeThem) {
    const std::string head = "range: / HTTP/1.1\r\nRange-Of-Hills: 3\r\nX: range: 1\r\n\r\n";
    EXPECT_EQ(withoutCostlyHeaders(head), head);
    EXPECT_EQ(withoutCostlyHeaders("GET /"), "GET /");
    EXPECT_EQ(withoutCostlyHeaders(""), "");
}

TEST(HttpHead, AServerForThisMachineAnswersToItsNamesOnly) {
    for (const char* bound : {"127.0.0.1", "localhost", "::1", "127.8.9.1"}) {
        SCOPED_TRACE(bound);
        for (const char* host : {"127.0.0.1:9180", "127.0.0.1", "localhost:1", "LocalHost",
                                 "[::1]:9180", "[::1]", "127.1.2.3:80"}) {
            EXPECT_TRUE(isHostAllowed(host, bound)) << host;
        }
        for (const char* host :
             {"", "evil.example", "evil.example:9180", "127.0.0.1.evil.example", "127.evil",
              "localhost.evil", "[::1", "[::2]:9180", "10.0.0.1", ":9180", "localhostx"}) {
            EXPECT_FALSE(isHostAllowed(host, bound)) << host;
        }
    }
}

TEST(HttpHead, AServerForTheNetworkAnswersToAnyName) {
    for (const char* bound : {"0.0.0.0", "::", "192.168.1.9", "printer.example"}) {
        EXPECT_TRUE(isHostAllowed("printer.example:9180", bound));
        EXPECT_FALSE(isHostAllowed("", bound));
    }
}

TEST(HttpHead, OnlyThePagesOfTheServerItselfMayChangeAnything) {
    EXPECT_TRUE(isOriginAllowed("http://localhost:9180", "same-origin", "localhost:9180"));
    EXPECT_TRUE(isOriginAllowed("http://LOCALHOST:9180", "", "localhost:9180"));
    EXPECT_FALSE(isOriginAllowed("http://localhost:9181", "same-site", "localhost:9180"));
    EXPECT_FALSE(isOriginAllowed("https://localhost:9180", "", "localhost:9180"));
    EXPECT_FALSE(isOriginAllowed("http://evil.example", "cross-site", "localhost:9180"));
    EXPECT_FALSE(isOriginAllowed("null", "cross-site", "localhost:9180"));
    EXPECT_FALSE(isOriginAllowed("http://", "", "localhost:9180"));
}

TEST(HttpHead, ProgramsThatAreNoBrowsersSendNoOrigin) {
    EXPECT_TRUE(isOriginAllowed("", "", "localhost"));
    EXPECT_TRUE(isOriginAllowed("", "none", "localhost"));
    EXPECT_TRUE(isOriginAllowed("", "same-origin", "localhost"));
    EXPECT_FALSE(isOriginAllowed("", "cross-site", "localhost"));
    EXPECT_FALSE(isOriginAllowed("", "same-site", "localhost"));
}

}  // namespace
}  // namespace tavio::virtual_printer
