#include "tavio/links/output_file.h"

#include <array>
#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "tavio/links/current_umask.h"

namespace tavio::links {
namespace {

using test::readFile;
using test::TemporaryFolder;
using test::writeFile;

std::span<const Byte> bytesOf(std::string_view text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

mode_t permissionsOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 0777;
}

TEST(OutputFile, AppearsWhenItIsCommitted) {
    TemporaryFolder folder;
    OutputFile file(folder / "job.bin");
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.write(bytesOf("one")));
    ASSERT_TRUE(file.write(bytesOf("two")));
    EXPECT_FALSE(std::filesystem::exists(folder / "job.bin"));
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(readFile(folder / "job.bin"), "onetwo");
    EXPECT_EQ(folder.names(), std::set<std::string>{"job.bin"});
    EXPECT_EQ(file.failure(), "");
}

TEST(OutputFile, LeavesNothingBehindWithoutACommit) {
    TemporaryFolder folder;
    {
        OutputFile file(folder / "job.bin");
        ASSERT_TRUE(file.open());
        ASSERT_TRUE(file.write(bytesOf("one")));
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(OutputFile, LeavesNothingBehindInAProgramThatIsKilled) {
    TemporaryFolder folder;
    int nameless = ::open(folder.path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (nameless < 0) GTEST_SKIP() << "no files without a name here";
    ::close(nameless);
    pid_t child = ::fork();
    if (child == 0) {
        OutputFile file(folder / "job.bin");
        bool written = file.open() && file.write(bytesOf("one"));
        ::_exit(written ? 7 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 7);
    EXPECT_TRUE(folder.names().empty());
}

TEST(OutputFile, KeepsTheOldFileWithoutACommit) {
    TemporaryFolder folder;
    writeFile(folder / "job.bin", "old");
    {
        OutputFile file(folder / "job.bin");
        ASSERT_TRUE(file.open());
        ASSERT_TRUE(file.write(bytesOf("new")));
        EXPECT_EQ(readFile(folder / "job.bin"), "old");
    }
    EXPECT_EQ(readFile(folder / "job.bin"), "old");
    EXPECT_EQ(folder.names(), std::set<std::string>{"job.bin"});
}

TEST(OutputFile, KeepsThePermissionsOfTheFileThatItReplaces) {
    TemporaryFolder folder;
    writeFile(folder / "job.bin", "old");
    ASSERT_EQ(::chmod((folder / "job.bin").c_str(), 0640), 0);
    OutputFile file(folder / "job.bin");
    ASSERT_TRUE(file.open() && file.write(bytesOf("new")) && file.commit());
    EXPECT_EQ(permissionsOf(folder / "job.bin"), 0640U);
    EXPECT_EQ(readFile(folder / "job.bin"), "new");
}

TEST(OutputFile, GivesANewFileTheUsualPermissions) {
    TemporaryFolder folder;
    mode_t before = ::umask(027);
    OutputFile file(folder / "job.bin");
    bool written = file.open() && file.commit();
    ::umask(before);
    ASSERT_TRUE(written);
    EXPECT_EQ(permissionsOf(folder / "job.bin"), 0640U);
}

// The umask belongs to all threads: it must not change, not even for a moment.
TEST(OutputFile, LeavesThePermissionsOfOtherThreadsFilesAlone) {
    TemporaryFolder folder;
    const mode_t before = ::umask(077);
    std::atomic<bool> isDone{false};
    std::thread writer([&] {
        for (int count = 0; count < 500; ++count) {
            OutputFile file(folder / "job.bin");
            EXPECT_TRUE(file.open() && file.commit()) << file.failure();
            EXPECT_EQ(::unlink((folder / "job.bin").c_str()), 0);
        }
        isDone = true;
    });
    const std::string other = folder / "other.bin";
    while (!isDone) {
        ::close(::open(other.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666));
        EXPECT_EQ(permissionsOf(other), 0600U);
        ::unlink(other.c_str());
    }
    writer.join();
    ::umask(before);
}

TEST(CurrentUmask, IsTheOneThatWasSet) {
    const mode_t before = ::umask(0351);
    const std::optional<mode_t> mask = currentUmask();
    EXPECT_EQ(::umask(before), 0351U);
    if (!mask) GTEST_SKIP() << "this system does not tell";
    EXPECT_EQ(*mask, 0351U);
}

TEST(OutputFile, WritesWhereASymbolicLinkPoints) {
    TemporaryFolder folder;
    writeFile(folder / "real.bin", "old");
    std::filesystem::create_symlink("real.bin", folder / "link.bin");
    OutputFile file(folder / "link.bin");
    ASSERT_TRUE(file.open() && file.write(bytesOf("new")) && file.commit());
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.bin"));
    EXPECT_EQ(readFile(folder / "real.bin"), "new");
}

TEST(OutputFile, MakesTheFileThatASymbolicLinkPointsAt) {
    TemporaryFolder folder;
    std::filesystem::create_directory(folder / "there");
    std::filesystem::create_symlink("there/second.bin", folder / "first.bin");
    std::filesystem::create_symlink("../real.bin", folder / "there/second.bin");
    OutputFile file(folder / "first.bin");
    ASSERT_TRUE(file.open() && file.write(bytesOf("new")) && file.commit()) << file.failure();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "first.bin"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "there/second.bin"));
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "real.bin"));
    EXPECT_EQ(readFile(folder / "real.bin"), "new");
    EXPECT_EQ(folder.names(), (std::set<std::string>{"first.bin", "real.bin", "there"}));
}

TEST(OutputFile, MakesTheFileThatALinkWithAnAbsolutePathPointsAt) {
    TemporaryFolder folder;
    std::filesystem::create_symlink(folder / "real.bin", folder / "link.bin");
    OutputFile file(folder / "link.bin");
    ASSERT_TRUE(file.open() && file.write(bytesOf("new")) && file.commit()) << file.failure();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.bin"));
    EXPECT_EQ(readFile(folder / "real.bin"), "new");
}

TEST(OutputFile, RefusesSymbolicLinksInALoop) {
    TemporaryFolder folder;
    std::filesystem::create_symlink("b.bin", folder / "a.bin");
    std::filesystem::create_symlink("a.bin", folder / "b.bin");
    OutputFile file(folder / "a.bin");
    EXPECT_FALSE(file.open());
    EXPECT_EQ(file.failure(),
              (folder / "a.bin") + " cannot be written: Too many levels of symbolic links");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "a.bin"));
}

// 255 bytes are the most that a file's name may have.
TEST(OutputFile, MayHaveTheLongestNameThereIs) {
    TemporaryFolder folder;
    const std::string longest(255, 'n');
    for (const char* text : {"new", "newer"}) {
        OutputFile file(folder / longest);
        ASSERT_TRUE(file.open() && file.write(bytesOf(text)) && file.commit()) << file.failure();
        EXPECT_EQ(readFile(folder / longest), text);
    }
    EXPECT_EQ(folder.names(), std::set<std::string>{longest});
    OutputFile tooLong(folder / (longest + "n"));
    EXPECT_FALSE(tooLong.open());
    EXPECT_TRUE(tooLong.failure().ends_with(" cannot be written: File name too long"));
}

TEST(OutputFile, RefusesAFolder) {
    TemporaryFolder folder;
    OutputFile file(folder.path());
    EXPECT_FALSE(file.open());
    EXPECT_EQ(file.failure(), folder.path() + " cannot be written: Is a directory");
    OutputFile missing(folder / "missing/");
    EXPECT_FALSE(missing.open());
    EXPECT_TRUE(folder.names().empty());
}

TEST(OutputFile, RefusesAPlaceInAMissingFolder) {
    TemporaryFolder folder;
    OutputFile file(folder / "missing/job.bin");
    EXPECT_FALSE(file.open());
    EXPECT_EQ(file.failure(),
              (folder / "missing/job.bin") + " cannot be written: No such file or directory");
    EXPECT_FALSE(file.write(bytesOf("x")));
    EXPECT_FALSE(file.commit());
}

TEST(OutputFile, RefusesNamesThatNameNothing) {
    EXPECT_FALSE(OutputFile("").open());
    EXPECT_FALSE(OutputFile(std::string("a\0b", 3)).open());
}

TEST(OutputFile, RefusesToWriteUnopened) {
    TemporaryFolder folder;
    OutputFile file(folder / "job.bin");
    EXPECT_FALSE(file.write(bytesOf("x")));
    EXPECT_FALSE(file.commit());
    EXPECT_NE(file.failure(), "");
    EXPECT_TRUE(folder.names().empty());
}

TEST(OutputFile, TellsThatADeviceIsFull) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    OutputFile file("/dev/full");
    ASSERT_TRUE(file.open());
    EXPECT_FALSE(file.write(bytesOf("x")));
    EXPECT_EQ(file.failure(), "/dev/full cannot be written: No space left on device");
    EXPECT_FALSE(file.commit());
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST(OutputFile, WritesAPipeAtOnce) {
    TemporaryFolder folder;
    std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    OutputFile file(pipe);
    ASSERT_TRUE(file.open() && file.write(bytesOf("through"))) << file.failure();
    std::array<char, 16> received{};
    EXPECT_EQ(::read(reader, received.data(), received.size()), 7);
    EXPECT_STREQ(received.data(), "through");
    EXPECT_TRUE(file.commit());
    ::close(reader);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

// More than a pipe holds: writing waits until the reader has taken some of it.
TEST(OutputFile, WaitsForTheReaderOfAPipe) {
    TemporaryFolder folder;
    std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int descriptor = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(::fcntl(descriptor, F_SETFL, 0), 0);  // reading waits too
    const std::string sent(std::size_t{3} << 20, 'x');
    std::string received;
    bool written = false;
    {
        OutputFile file(pipe);
        ASSERT_TRUE(file.open()) << file.failure();
        std::thread writer([&] { written = file.write(bytesOf(sent)) && file.commit(); });
        std::array<char, 65536> buffer{};
        ssize_t count = 0;
        while ((count = ::read(descriptor, buffer.data(), buffer.size())) > 0) {
            received.append(buffer.data(), static_cast<std::size_t>(count));
        }
        writer.join();
        EXPECT_TRUE(written) << file.failure();
    }
    ::close(descriptor);
    EXPECT_TRUE(received == sent) << received.size() << " bytes";
}

TEST(OutputFile, RefusesAPipeThatNobodyReads) {
    TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    OutputFile file(folder / "pipe");
    EXPECT_FALSE(file.open());
    EXPECT_EQ(file.failure(), (folder / "pipe") + " is a pipe that nobody reads");
}

// Redirected output continues at the descriptor's position: earlier bytes stay.
TEST(OutputFile, ContinuesOnAnOpenDescriptor) {
    TemporaryFolder folder;
    writeFile(folder / "redirected", "");
    int descriptor = ::open((folder / "redirected").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(::write(descriptor, "before ", 7), 7);
    {
        OutputFile file("/dev/fd/" + std::to_string(descriptor));
        EXPECT_TRUE(file.open() && file.write(bytesOf("after")) && file.commit());
    }
    EXPECT_EQ(::write(descriptor, " end", 4), 4) << "the descriptor itself must stay open";
    ::close(descriptor);
    EXPECT_EQ(readFile(folder / "redirected"), "before after end");
}

TEST(OutputFile, RefusesADescriptorThatIsNotOpen) {
    OutputFile file("/dev/fd/1000000");
    EXPECT_FALSE(file.open());
    EXPECT_NE(file.failure(), "");
}

TEST(OutputFile, CanBeMovedWhileOpen) {
    TemporaryFolder folder;
    OutputFile first(folder / "job.bin");
    ASSERT_TRUE(first.open() && first.write(bytesOf("x")));
    OutputFile second(std::move(first));
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(readFile(folder / "job.bin"), "x");
}

}  // namespace
}  // namespace tavio::links
