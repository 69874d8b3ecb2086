#include "TavioIpadSDK/platform/bytes.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/bitmaps.h"
#include "support/rights.h"
#include "support/temporary_folder.h"

namespace tavio::platform {
namespace {

// A sanitizer ends the program where operator new would throw.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kRunsUnderSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kRunsUnderSanitizer = true;
#else
constexpr bool kRunsUnderSanitizer = false;
#endif
#else
constexpr bool kRunsUnderSanitizer = false;
#endif

using test::bytesOf;
using test::TemporaryFolder;
using test::writeFile;

class WholeFile : public testing::Test {
  protected:
    TemporaryFolder folder_;
};

TEST_F(WholeFile, IsReadToTheByte) {
    const std::string content = std::string("a\0b\r\n\xFF\x1B", 7);
    writeFile(folder_ / "file", content);
    EXPECT_EQ(readWholeFile(folder_ / "file"), bytesOf(content));
}

TEST_F(WholeFile, MayBeEmpty) {
    writeFile(folder_ / "empty", "");
    EXPECT_EQ(readWholeFile(folder_ / "empty"), Bytes());
}

TEST_F(WholeFile, MayBeLarge) {
    std::string content;
    for (int i = 0; i < 1'000'000; ++i) content += std::to_string(i);
    writeFile(folder_ / "large", content);
    const std::optional<Bytes> read = readWholeFile(folder_ / "large");
    ASSERT_TRUE(read);
    EXPECT_TRUE(*read == bytesOf(content));
}

TEST_F(WholeFile, OfEverySizeAroundAPowerOfTwoIsReadWhole) {
    for (const std::size_t size : {1U, 4095U, 4096U, 4097U, 65535U, 65536U, 65537U}) {
        const std::string content(size, 'x');
        writeFile(folder_ / "file", content);
        EXPECT_EQ(readWholeFile(folder_ / "file").value_or(Bytes()).size(), size);
    }
}

TEST_F(WholeFile, ThatSaysItHasNoSizeIsReadToItsEnd) {
    const std::string path = "/proc/self/status";
    if (!fileExists(path)) GTEST_SKIP() << "no " << path;
    ASSERT_EQ(std::filesystem::file_size(path), 0U);
    const std::optional<Bytes> read = readWholeFile(path);
    ASSERT_TRUE(read);
    EXPECT_EQ(std::string(read->begin(), read->begin() + 5), "Name:");
}

TEST_F(WholeFile, IsReadThroughASymbolicLink) {
    writeFile(folder_ / "file", "content");
    std::filesystem::create_symlink(folder_ / "file", folder_ / "link");
    EXPECT_EQ(readWholeFile(folder_ / "link"), bytesOf("content"));
}

TEST_F(WholeFile, IsNoneWhereThereIsNoFile) {
    EXPECT_EQ(readWholeFile(folder_ / "missing"), std::nullopt);
    EXPECT_EQ(readWholeFile(""), std::nullopt);
    std::filesystem::create_symlink(folder_ / "missing", folder_ / "dangling");
    EXPECT_EQ(readWholeFile(folder_ / "dangling"), std::nullopt);
}

TEST_F(WholeFile, IsNoneForAFolder) {
    EXPECT_EQ(readWholeFile(folder_.path()), std::nullopt);
}

TEST_F(WholeFile, IsNoneForAPipeAndDoesNotWaitForAWriter) {
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readWholeFile(folder_ / "pipe"), std::nullopt);
}

TEST_F(WholeFile, IsNoneForADeviceThatNeverEnds) {
    ASSERT_TRUE(fileExists("/dev/zero"));
    EXPECT_EQ(readWholeFile("/dev/zero"), std::nullopt);
    EXPECT_EQ(readWholeFile("/dev/null"), std::nullopt);
}

TEST_F(WholeFile, IsNoneForAPathThatANulByteWouldCutShort) {
    writeFile(folder_ / "file", "content");
    EXPECT_EQ(readWholeFile((folder_ / "file") + std::string("\0.txt", 5)), std::nullopt);
}

TEST_F(WholeFile, IsNoneWithoutTheRightToReadIt) {
    writeFile(folder_ / "file", "content");
    ASSERT_EQ(::chmod((folder_ / "file").c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    const test::WithoutRootRights rights;
    ASSERT_TRUE(rights.succeeded());
    EXPECT_TRUE(fileExists(folder_ / "file"));
    EXPECT_EQ(readWholeFile(folder_ / "file"), std::nullopt);
}

TEST_F(WholeFile, IsNoneWhenItIsLargerThanAllMemory) {
    if (kRunsUnderSanitizer) GTEST_SKIP() << "a sanitizer does not let memory run out";
    const std::string path = folder_ / "sparse";
    writeFile(path, "x");
    std::error_code error;
    std::filesystem::resize_file(path, std::uintmax_t{1} << 43, error);
    if (error) GTEST_SKIP() << "this file system has no files of 8 TiB";
    EXPECT_EQ(readWholeFile(path), std::nullopt);
}

TEST_F(WholeFile, ExistenceIsThatOfAnythingAtThePath) {
    writeFile(folder_ / "file", "");
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder_ / "missing", folder_ / "dangling");
    EXPECT_TRUE(fileExists(folder_ / "file"));
    EXPECT_TRUE(fileExists(folder_ / "pipe"));
    EXPECT_TRUE(fileExists(folder_.path()));
    EXPECT_TRUE(fileExists("/dev/null"));
    EXPECT_FALSE(fileExists(folder_ / "missing"));
    EXPECT_FALSE(fileExists(folder_ / "dangling"));
    EXPECT_FALSE(fileExists(folder_ / "file/below"));
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists((folder_ / "file") + std::string("\0x", 2)));
    EXPECT_FALSE(fileExists(std::string(100000, 'x')));
}

}  // namespace
}  // namespace tavio::platform
