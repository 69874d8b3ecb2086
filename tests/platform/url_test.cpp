#include "TavioIpadSDK/platform/url.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace tavio::platform {
namespace {

std::string extensionOf(std::string_view text) {
    return Url::fromText(text).pathExtension();
}

std::string pathOf(std::string_view text) {
    return Url::fromText(text).fileSystemPath();
}

TEST(Url, WithoutATextHasNothing) {
    EXPECT_EQ(Url().absoluteText(), "");
    EXPECT_EQ(Url().fileSystemPath(), "");
    EXPECT_EQ(Url().pathExtension(), "");
}

TEST(Url, KeepsItsTextToTheLetter) {
    for (const char* text : {"", "file:///a%20b.txt", "HTTP://X/../a.Txt?q#f", "%", "a b", "\xFF"})
        EXPECT_EQ(Url::fromText(text).absoluteText(), text);
}

// ---- Extension ----------------------------------------------------------------------------------

TEST(UrlExtension, IsWhatFollowsTheLastDotOfTheLastComponent) {
    EXPECT_EQ(extensionOf("file:///tickets/notes.txt"), "txt");
    EXPECT_EQ(extensionOf("file:///tickets/notes.tar.TXT"), "TXT");
    EXPECT_EQ(extensionOf("file:///tickets.pdf/notes"), "");
    EXPECT_EQ(extensionOf("notes.txt"), "txt");
    EXPECT_EQ(extensionOf("/notes.txt"), "txt");
    EXPECT_EQ(extensionOf("assets-library://asset/asset.JPG"), "JPG");
}

TEST(UrlExtension, KeepsItsCase) {
    EXPECT_EQ(extensionOf("file:///notes.Txt"), "Txt");
}

TEST(UrlExtension, IsEmptyWithoutADot) {
    for (const char* text :
         {"file:///notes", "file:///", "file://", "notes", "/", "", "file:///a.b/c"})
        EXPECT_EQ(extensionOf(text), "") << text;
}

TEST(UrlExtension, IsEmptyBehindADotAtTheEnd) {
    EXPECT_EQ(extensionOf("file:///notes."), "");
    EXPECT_EQ(extensionOf("file:///notes.txt."), "");
    EXPECT_EQ(extensionOf("file:///.."), "");
}

TEST(UrlExtension, IsThereForANameThatIsNothingElse) {
    EXPECT_EQ(extensionOf("file:///tickets/.txt"), "txt");
}

TEST(UrlExtension, IsTakenFromTheDecodedPath) {
    EXPECT_EQ(extensionOf("file:///a%2Etxt"), "txt");
    EXPECT_EQ(extensionOf("file:///a.%74%78%74"), "txt");
    EXPECT_EQ(extensionOf("file:///a.t%20t"), "t t");
    EXPECT_EQ(extensionOf("file:///a%252Etxt"), "");
}

TEST(UrlExtension, CountsAnEncodedSlashAsTheEndOfAComponent) {
    EXPECT_EQ(extensionOf("file:///a.pdf%2Fb"), "");
    EXPECT_EQ(extensionOf("file:///a.pdf%2fb.txt"), "txt");
}

TEST(UrlExtension, IsNotTakenFromQueryFragmentAuthorityOrScheme) {
    EXPECT_EQ(extensionOf("assets-library://asset/asset.JPG?id=7&ext=PNG.bmp"), "JPG");
    EXPECT_EQ(extensionOf("file:///notes.txt#page.pdf"), "txt");
    EXPECT_EQ(extensionOf("file:///notes.txt#a?b.pdf"), "txt");
    EXPECT_EQ(extensionOf("file:///notes?name=a.txt"), "");
    EXPECT_EQ(extensionOf("http://printer.pdf"), "");
    EXPECT_EQ(extensionOf("http://printer.pdf?x"), "");
    EXPECT_EQ(extensionOf("my.scheme:notes"), "");
}

TEST(UrlExtension, KeepsAnEncodedQuestionMarkOrHashInTheName) {
    EXPECT_EQ(extensionOf("file:///what%3F.txt"), "txt");
    EXPECT_EQ(extensionOf("file:///a.txt%3Fx"), "txt?x");
    EXPECT_EQ(extensionOf("file:///a%23.txt"), "txt");
}

TEST(UrlExtension, PassesOverSlashesAtTheEnd) {
    EXPECT_EQ(extensionOf("file:///folder.txt/"), "txt");
    EXPECT_EQ(extensionOf("file:///folder.txt///"), "txt");
}

// ---- Path ---------------------------------------------------------------------------------------

TEST(UrlPath, LiesBehindSchemeAndAuthority) {
    EXPECT_EQ(pathOf("file:///a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("file://localhost/a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("file:/a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("/a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("a/b.txt"), "a/b.txt");
    EXPECT_EQ(pathOf("http://host:80/a?b#c"), "/a");
    EXPECT_EQ(pathOf("http://host?b"), "");
    EXPECT_EQ(pathOf("//host/a"), "/a");
    EXPECT_EQ(pathOf("file:////a"), "//a");
}

TEST(UrlPath, TakesOnlyAProperSchemeForOne) {
    EXPECT_EQ(pathOf("a+b-c.1:x"), "x");
    EXPECT_EQ(pathOf("1a:x"), "1a:x");
    EXPECT_EQ(pathOf(":x"), ":x");
    EXPECT_EQ(pathOf("a_b:x"), "a_b:x");
    EXPECT_EQ(pathOf("a/b:x"), "a/b:x");
}

TEST(UrlPath, IsPercentDecoded) {
    EXPECT_EQ(pathOf("file:///my%20ticket%e2%82%AC.pdf"), "/my ticket\xE2\x82\xAC.pdf");
    EXPECT_EQ(pathOf("file:///a%2Fb"), "/a/b");
    EXPECT_EQ(pathOf("file:///a%2520b"), "/a%20b");
    EXPECT_EQ(pathOf("file:///a%00b"), std::string("/a\0b", 4));
    EXPECT_EQ(pathOf("file:///a+b"), "/a+b");
}

TEST(UrlPath, KeepsAPercentSignThatIsNotFollowedByTwoDigits) {
    for (const char* path : {"/100%", "/%4", "/%G0", "/%0G", "/%%", "/% 41", "/%-1"})
        EXPECT_EQ(pathOf(std::string("file://") + path), path);
    EXPECT_EQ(pathOf("file:///%%41"), "/%A");
}

// ---- fromPath -----------------------------------------------------------------------------------

TEST(UrlFromPath, EncodesWhatMayNotStandInAPath) {
    EXPECT_EQ(Url::fromPath("/srv/my ticket.pdf").absoluteText(), "file:///srv/my%20ticket.pdf");
    EXPECT_EQ(Url::fromPath("/a?b#c%20").absoluteText(), "file:///a%3Fb%23c%2520");
    EXPECT_EQ(Url::fromPath("/\xC3\xA9").absoluteText(), "file:///%C3%A9");
    EXPECT_EQ(Url::fromPath("/-._~!$&'()*+,;=:@").absoluteText(), "file:///-._~!$&'()*+,;=:@");
}

TEST(UrlFromPath, ComesBackAsThePathWhateverItsBytes) {
    std::string path = "/";
    for (int byte = 0; byte < 256; ++byte) path += static_cast<char>(byte);
    EXPECT_EQ(Url::fromPath(path).fileSystemPath(), path);
    EXPECT_EQ(Url::fromPath("//server/share").fileSystemPath(), "//server/share");
    EXPECT_EQ(Url::fromPath("/folder/").fileSystemPath(), "/folder/");
}

TEST(UrlFromPath, TakesARelativePathFromTheCurrentFolder) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(Url::fromPath("a:b.txt").fileSystemPath(), here + "/a:b.txt");
    EXPECT_EQ(Url::fromPath("a.txt").pathExtension(), "txt");
}

TEST(UrlFromPath, OfNoPathNamesNothing) {
    EXPECT_EQ(Url::fromPath("").fileSystemPath(), "");
    EXPECT_EQ(Url::fromPath("").pathExtension(), "");
}

}  // namespace
}  // namespace tavio::platform
