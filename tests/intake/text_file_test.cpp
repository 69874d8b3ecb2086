// Text files are sent as they are.
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/intake/send_file.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"
#include "support/fresh_state.h"
#include "support/rights.h"
#include "support/temporary_folder.h"

namespace tavio {
namespace {

using test::transport;
using test::TransportCall;
using test::writeFile;
using Calls = std::vector<TransportCall>;

class TextFile : public test::FreshState {
  protected:
    TextFile() { Mode = "WF"; }

    URL urlOf(const std::string& name) const { return URL::fromPath(folder_ / name); }
    URL written(const std::string& name, const std::string& content) const {
        writeFile(folder_ / name, content);
        return urlOf(name);
    }
    static Calls oneWrite(Text text) { return {{"Write_WF", std::move(text), {}}}; }

    test::TemporaryFolder folder_;
};

TEST_F(TextFile, IsSentWithOneWriteAndNothingAdded) {
    const std::string content = "<RC10,20><F8>Row B, seat 12\r\n<p>\n";
    EXPECT_TRUE(SendFile(written("notes.txt", content), 30, 40));
    EXPECT_EQ(transport().calls, oneWrite(content));
}

TEST_F(TextFile, GoesToBluetoothWhenThatIsActive) {
    Mode = "BT";
    EXPECT_TRUE(RWTextFile(written("notes.txt", "x")));
    EXPECT_EQ(transport().calls, (Calls{{"Write_BT", "x", {}}}));
}

TEST_F(TextFile, IsReadButDroppedWithoutASession) {
    Mode = "";
    EXPECT_TRUE(SendFile(written("notes.txt", "x"), 0, 0));
    EXPECT_EQ(transport().calls, Calls());
}

TEST_F(TextFile, IsNotSplitHoweverLong) {
    std::string content;
    for (int i = 0; i < 500000; ++i) content += "line \xE2\x82\xAC\n";
    EXPECT_TRUE(SendFile(written("long.txt", content), 0, 0));
    EXPECT_TRUE(transport().calls == oneWrite(content));
}

TEST_F(TextFile, OfNoBytesIsSentAsOneEmptyText) {
    EXPECT_TRUE(SendFile(written("empty.txt", ""), 0, 0));
    EXPECT_EQ(transport().calls, oneWrite(""));
}

TEST_F(TextFile, KeepsALeadingByteOrderMark) {
    EXPECT_TRUE(SendFile(written("bom.txt", "\xEF\xBB\xBFx"), 0, 0));
    EXPECT_EQ(transport().calls, oneWrite("\xEF\xBB\xBFx"));
}

TEST_F(TextFile, KeepsANulByte) {
    const std::string content("a\0b\0", 4);
    EXPECT_TRUE(SendFile(written("nul.txt", content), 0, 0));
    EXPECT_EQ(transport().calls, oneWrite(content));
}

TEST_F(TextFile, ThatIsNotUtf8IsSentAsNoText) {
    for (const char* content : {"caf\xE9", "ok until here \xC3", "\xFF\xFEx", "\xED\xA0\x80"}) {
        transport() = {};
        EXPECT_TRUE(SendFile(written("latin.txt", content), 0, 0));
        EXPECT_EQ(transport().calls, oneWrite(std::nullopt));
    }
}

TEST_F(TextFile, ThatIsMissingSendsNothingAndReturnsFalse) {
    EXPECT_FALSE(SendFile(urlOf("missing.txt"), 0, 0));
    EXPECT_FALSE(RWTextFile(urlOf("missing.txt")));
    EXPECT_FALSE(RWTextFile(URL()));
    EXPECT_EQ(transport().calls, Calls());
}

TEST_F(TextFile, ThatIsAFolderExistsButSendsNothing) {
    ASSERT_EQ(::mkdir((folder_ / "x.txt").c_str(), 0700), 0);
    EXPECT_TRUE(SendFile(urlOf("x.txt"), 0, 0));
    EXPECT_TRUE(SendFile(URL::fromText(urlOf("x.txt").absoluteText() + "/"), 0, 0));
    EXPECT_EQ(transport().calls, Calls());
}

TEST_F(TextFile, ThatIsAPipeSendsNothingAndDoesNotWaitForAWriter) {
    ASSERT_EQ(::mkfifo((folder_ / "x.txt").c_str(), 0600), 0);
    EXPECT_TRUE(SendFile(urlOf("x.txt"), 0, 0));
    EXPECT_EQ(transport().calls, Calls());
}

TEST_F(TextFile, ThatMayNotBeReadExistsButSendsNothing) {
    const URL url = written("x.txt", "x");
    ASSERT_EQ(::chmod((folder_ / "x.txt").c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    const test::WithoutRootRights rights;
    ASSERT_TRUE(rights.succeeded());
    EXPECT_TRUE(SendFile(url, 0, 0));
    EXPECT_EQ(transport().calls, Calls());
}

TEST_F(TextFile, MayHaveAnyNameThatAFileMayHave) {
    for (const char* name : {"my notes.txt", "100%.txt", "a%2Etxt.txt", "what?.txt", "a#b.TXT",
                             "\xC3\xA9.txt", "\xFF.txt", ".txt", "a:b.txt"}) {
        SCOPED_TRACE(name);
        transport() = {};
        EXPECT_TRUE(SendFile(written(name, "x"), 0, 0));
        EXPECT_EQ(transport().calls, oneWrite("x"));
    }
}

TEST_F(TextFile, IsFoundThroughEncodedDotsAndSlashesBehindQueryAndFragment) {
    written("a.txt", "x");
    std::string encoded = "file:///";
    for (const char c : folder_.path().substr(1))
        encoded += c == '/' ? std::string("%2F") : std::string{c};
    EXPECT_TRUE(SendFile(URL::fromText(encoded + "%2fa%2Etxt?page=1#top.pdf"), 0, 0));
    EXPECT_EQ(transport().calls, oneWrite("x"));
}

TEST_F(TextFile, IsFoundByABarePathToo) {
    written("a.txt", "x");
    EXPECT_TRUE(SendFile(URL::fromText(folder_ / "a.txt"), 0, 0));
    EXPECT_EQ(transport().calls, oneWrite("x"));
}

TEST_F(TextFile, WithANulByteInItsPathIsMissing) {
    written("a", "x");
    EXPECT_FALSE(SendFile(URL::fromText("file://" + (folder_ / "a") + "%00.txt"), 0, 0));
    EXPECT_EQ(transport().calls, Calls());
}

}  // namespace
}  // namespace tavio
