// Opening, reading and writing files.
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/machine/regular_file.h"
#include "TavioIpadSDK/machine/write_all.h"
#include "support/temporary_folder.h"

namespace tavio::machine {
namespace {

using test::TemporaryFolder;
using test::writeFile;

// The errno of a refused path; 0 if it is opened.
int refusal(const std::string& path) {
    errno = 0;
    const Descriptor file = openRegularFile(path);
    return file.isOpen() ? 0 : errno;
}

TEST(OpenRegularFile, OpensAFileForReadingOnly) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "text");
    const Descriptor file = openRegularFile(folder / "a");
    ASSERT_TRUE(file.isOpen());
    std::array<char, 8> bytes{};
    EXPECT_EQ(::read(file.get(), bytes.data(), bytes.size()), 4);
    EXPECT_EQ(::fcntl(file.get(), F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(::fcntl(file.get(), F_GETFD), FD_CLOEXEC);
}

TEST(OpenRegularFile, FollowsASymbolicLink) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "text");
    std::filesystem::create_symlink("a", folder / "link");
    EXPECT_EQ(refusal(folder / "link"), 0);
}

TEST(OpenRegularFile, TellsWhyItDoesNotOpen) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "text");
    EXPECT_EQ(refusal(folder / "b"), ENOENT);
    EXPECT_EQ(refusal(""), ENOENT);
    EXPECT_EQ(refusal((folder / "a") + std::string("\0b", 2)), ENOENT);
    EXPECT_EQ(refusal(folder / "a/b"), ENOTDIR);
    EXPECT_EQ(refusal(folder.path()), EISDIR);
    EXPECT_EQ(refusal("/dev/null"), ESPIPE);
}

TEST(OpenRegularFile, DoesNotWaitForAPipeThatNobodyWritesTo) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(refusal(folder / "pipe"), ESPIPE);
}

TEST(OpenRegularFile, RefusesASocket) {
    const TemporaryFolder folder;
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder / "socket";
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(refusal(path), ESPIPE);
}

TEST(RegularFile, IsReadFromAnyOffset) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "0123456789");
    const auto file = RegularFile::open(folder / "a");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->size(), 10U);
    Bytes into(4);
    EXPECT_EQ(file->read(into, 3), 4U);
    EXPECT_EQ(into, (Bytes{'3', '4', '5', '6'}));
    EXPECT_EQ(file->read(into, 8), 2U);
    EXPECT_EQ(file->read(into, 10), 0U);
    EXPECT_EQ(file->read(into, UINT64_MAX), 0U);
}

TEST(RegularFile, IsNothingElse) {
    EXPECT_EQ(RegularFile::open("/dev/zero"), nullptr);
    EXPECT_EQ(RegularFile::open("/no such file"), nullptr);
}

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// Until the other end closes.
std::string readToEnd(int descriptor) {
    std::string all;
    std::array<char, 1000> piece{};
    for (;;) {
        const ssize_t count = ::read(descriptor, piece.data(), piece.size());
        if (count <= 0) return all;
        all.append(piece.data(), static_cast<std::size_t>(count));
    }
}

// Far more than a pipe holds, so that it takes several writes.
TEST(WriteAll, WritesInAsManyPiecesAsItTakes) {
    Pipe pipe = makePipe();
    const std::string text(1'000'000, 'x');
    std::string read;
    std::thread reader([&] { read = readToEnd(pipe.reading.get()); });
    EXPECT_EQ(writeAll(pipe.writing.get(), std::as_bytes(std::span(text))), 0);
    pipe.writing.reset();
    reader.join();
    EXPECT_EQ(read, text);
}

TEST(WriteAll, WritesNothingOfNothing) {
    EXPECT_EQ(writeAll(-1, {}), 0);
}

TEST(WriteAll, TellsTheErrorThatCameFirst) {
    const std::string_view text = "text";
    EXPECT_EQ(writeAll(-1, std::as_bytes(std::span(text))), EBADF);
    const Descriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (!full.isOpen()) GTEST_SKIP() << "no /dev/full here";
    EXPECT_EQ(writeAll(full.get(), std::as_bytes(std::span(text))), ENOSPC);
}

}  // namespace
}  // namespace tavio::machine
