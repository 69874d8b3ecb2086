#include "tavio/links/file_link.h"

#include <array>
#include <filesystem>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "support/temporary_folder.h"
#include "tavio/links/transport_operations.h"

namespace tavio::links {
namespace {

using test::readFile;
using test::TemporaryFolder;

constexpr std::array<Byte, 4> kBytes{0x00, 0x1B, 0xFF, 0x0A};
const std::string kAsText("\x00\x1B\xFF\x0A", 4);

TEST(FileLink, WritesTheBytesInOrder) {
    TemporaryFolder folder;
    FileLink link(folder / "job.bin");
    ASSERT_TRUE(link.open("anything"));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_TRUE(link.write({}));
    EXPECT_TRUE(link.write(kBytes));
    EXPECT_EQ(link.read(), std::nullopt);
    link.close();
    EXPECT_TRUE(link.commit());
    EXPECT_EQ(readFile(folder / "job.bin"), kAsText + kAsText);
}

TEST(FileLink, DropsBytesWhileItIsNotOpen) {
    TemporaryFolder folder;
    FileLink link(folder / "job.bin");
    EXPECT_FALSE(link.write(kBytes));
    ASSERT_TRUE(link.open(""));
    EXPECT_TRUE(link.write(kBytes));
    link.close();
    link.close();
    EXPECT_FALSE(link.write(kBytes));
    EXPECT_TRUE(link.commit());
    EXPECT_EQ(readFile(folder / "job.bin"), kAsText);
}

// The example of links/link.h.
TEST(FileLink, HoldsWhatASessionSent) {
    TemporaryFolder folder;
    test::writeFile(folder / "notes.txt", "Row B");
    const std::string job = folder / "job.bin";
    auto link = std::make_shared<FileLink>(job);
    useLink(link);
    EXPECT_TRUE(OpenSessionWiFi(job));
    SendFile(URL::fromPath(folder / "notes.txt"), 10, 20);
    CloseSessionWiFi();
    useLink(nullptr);
    EXPECT_FALSE(std::filesystem::exists(job));
    EXPECT_TRUE(link->commit()) << link->failure();
    EXPECT_EQ(readFile(job), "Row B");
}

TEST(FileLink, TellsWhyItCannotOpen) {
    TemporaryFolder folder;
    FileLink link(folder / "missing/job.bin");
    EXPECT_FALSE(link.open(""));
    EXPECT_EQ(link.failure(),
              (folder / "missing/job.bin") + " cannot be written: No such file or directory");
    EXPECT_FALSE(link.write(kBytes));
    EXPECT_FALSE(link.commit());
}

TEST(FileLink, KeepsTheFirstFailure) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    FileLink link("/dev/full");
    ASSERT_TRUE(link.open(""));
    EXPECT_FALSE(link.write(kBytes));
    EXPECT_FALSE(link.write(kBytes));
    link.close();
    EXPECT_EQ(link.failure(), "/dev/full cannot be written: No space left on device");
}

}  // namespace
}  // namespace tavio::links
