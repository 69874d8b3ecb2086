// Clients over a pseudo-terminal.
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"
#include "support/temporary_folder.h"
#include "tools/tavio-printer/doors/server_bench.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;
using test::TemporaryFolder;

PrintServerSettings onTerminal(const DeviceSettings& device = smallDevice(),
                               const std::string& link = "") {
    PrintServerSettings settings;
    settings.device = device;
    settings.listen = std::nullopt;
    settings.tty = link;
    return settings;
}

std::string deviceOf(const ServerBench& bench) {
    return bench.server.serialAddress().substr(std::string("tty:").size());
}

class TtyClient {
  public:
    explicit TtyClient(const std::string& device)
        : device_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_TRUE(device_.isOpen()) << device;
    }

    int descriptor() const { return device_.get(); }

    void send(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = ::write(device_.get(), text.data(), text.size());
            ASSERT_GT(count, 0) << errno;
            text.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    bool hasAnswer(milliseconds timeout) const {
        pollfd polled{device_.get(), POLLIN, 0};
        return ::poll(&polled, 1, static_cast<int>(timeout.count())) == 1;
    }

    std::string read(std::size_t count) const {
        std::string text;
        std::array<char, 4096> buffer{};
        while (text.size() < count && hasAnswer(std::chrono::minutes(1))) {
            const ssize_t got = ::read(device_.get(), buffer.data(), buffer.size());
            if (got <= 0) break;
            text.append(buffer.data(), static_cast<std::size_t>(got));
        }
        return text;
    }

  private:
    machine::Descriptor device_;
};

bool isFree(ServerBench& bench) {
    return eventually([&] { return !bench.server.state().connected; });
}

TEST(TtyServer, PrintsEveryByteAsItIs) {
    std::string bytes;
    for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i);
    const std::string job = "<G1000>" + bytes + "<p>";
    ServerBench bench(onTerminal());
    EXPECT_EQ(bench.server.printAddress(), "");
    const TtyClient client(deviceOf(bench));
    client.send(job);
    EXPECT_EQ(bench.streams(1), (Lines{job}));
}

TEST(TtyServer, MoreThanTheTerminalHolds) {
    std::string job;
    while (job.size() < 200'000) job += "<RC0,0>" + graphics(999, 0x3E);
    job += "<p>";
    ServerBench bench(onTerminal());
    {
        const TtyClient client(deviceOf(bench));
        client.send(job);
    }
    EXPECT_EQ(bench.streams(1), (Lines{job}));
}

TEST(TtyServer, ClosingTheDeviceIsTheEndOfTheStream) {
    ServerBench bench(onTerminal());
    for (std::size_t n = 1; n <= 3; ++n) {
        {
            const TtyClient client(deviceOf(bench));
            client.send("half<RC");
        }
        EXPECT_EQ(bench.streams(n)[n - 1], "half<RC");
        EXPECT_EQ(bench.tickets(n)[n - 1].connection, n);
        ASSERT_TRUE(isFree(bench));
    }
}

TEST(TtyServer, AnswersATicketAndASilentClient) {
    DeviceSettings settings = smallDevice();
    settings.reply.text = "ok\r\n";
    ServerBench bench(onTerminal(settings));
    const TtyClient client(deviceOf(bench));
    EXPECT_EQ(client.read(4), "ok\r\n");
    client.send("x<p>");
    EXPECT_EQ(client.read(4), "ok\r\n");
}

// Neither an answer nor the settings that the last program made are there for the next.
TEST(TtyServer, ANewClientFindsAFreshDevice) {
    DeviceSettings settings = smallDevice();
    settings.reply.text = "ok";
    ServerBench bench(onTerminal(settings));
    {
        const TtyClient client(deviceOf(bench));
        termios mode{};
        ASSERT_EQ(::tcgetattr(client.descriptor(), &mode), 0);
        mode.c_lflag |= ICANON;
        mode.c_oflag |= OPOST | ONLCR;
        ASSERT_EQ(::tcsetattr(client.descriptor(), TCSANOW, &mode), 0);
        client.send("x<p>x<p>x<p>");
        ASSERT_TRUE(bench.hasReceived(12));
    }
    ASSERT_TRUE(isFree(bench));
    const TtyClient client(deviceOf(bench));
    EXPECT_FALSE(client.hasAnswer(milliseconds(0)));
    client.send("\n<p>");
    EXPECT_EQ(client.read(2), "ok");
    EXPECT_EQ(bench.streams(4)[3], "\n<p>");
}

TEST(TtyServer, AClientThatIsCutOffIsIgnoredUntilItClosesTheDevice) {
    DeviceSettings settings = smallDevice();
    settings.faults.resetAfter = 4;
    settings.reply.text = "ok";
    ServerBench bench(onTerminal(settings));
    {
        const TtyClient client(deviceOf(bench));
        client.send("abcdefgh");
        EXPECT_EQ(bench.streams(1), (Lines{"abcd"}));
        client.send("ijkl");
    }
    ASSERT_TRUE(isFree(bench));
    // A program that opens the device right after another cannot be told from it: it is tried again
    // and again, with more and more time between.
    milliseconds pause(1);
    EXPECT_TRUE(eventually([&] {
        std::this_thread::sleep_for(pause *= 2);
        const TtyClient client(deviceOf(bench));
        client.send("<p>");
        return client.hasAnswer(3 * Reply::kSilence);
    }));
    EXPECT_EQ(bench.streams(2)[1], "<p>");
}

TEST(TtyServer, BytesWaitWhilePaperIsOut) {
    DeviceSettings settings = smallDevice();
    settings.faults.paperOutAfter = 1;
    settings.physics.receiveBuffer = 3;
    ServerBench bench(onTerminal(settings));
    {
        const TtyClient client(deviceOf(bench));
        client.send("a<p>bcdefgh<p>");
        bench.tickets(1);
    }
    ASSERT_TRUE(bench.hasReceived(7));
    EXPECT_TRUE(bench.server.state().connected);  // there are bytes on the line
    bench.server.loadPaper();
    EXPECT_EQ(bench.streams(2), (Lines{"a<p>", "bcdefgh<p>"}));
    EXPECT_TRUE(isFree(bench));
}

TEST(TtyServer, ServesTheNetworkBesideIt) {
    PrintServerSettings settings = onTerminal();
    settings.listen = ListenAddress{"127.0.0.1", 0};
    ServerBench bench(settings);
    {
        const TtyClient serial(deviceOf(bench));
        serial.send("one");
        ASSERT_TRUE(bench.hasReceived(3));
        TcpClient network(bench.port());
        network.send("two<p>");
        network.endSending();
        serial.send("<p>");
        bench.tickets(1);
    }
    EXPECT_EQ(bench.streams(2), (Lines{"one<p>", "two<p>"}));
}

// A client cannot be refused there.
TEST(TtyServer, WithOneClientTheTerminalWaitsAllTheSame) {
    PrintServerSettings settings = onTerminal();
    settings.listen = ListenAddress{"127.0.0.1", 0};
    settings.oneClient = true;
    ServerBench bench(settings);
    TcpClient network(bench.port());
    network.send("one");
    ASSERT_TRUE(bench.hasReceived(3));
    const TtyClient serial(deviceOf(bench));
    serial.send("two<p>");
    TcpClient other(bench.port());
    other.readToEnd();
    EXPECT_EQ(other.error, ECONNRESET);
    network.send("<p>");
    network.endSending();
    EXPECT_EQ(bench.streams(2), (Lines{"one<p>", "two<p>"}));
}

TEST(TtyServer, MakesALinkAndRemovesIt) {
    const TemporaryFolder folder;
    const std::string link = folder / "printer";
    {
        ServerBench bench(onTerminal(smallDevice(), link));
        EXPECT_EQ(std::filesystem::read_symlink(link), deviceOf(bench));
        const TtyClient client(link);
        client.send("x<p>");
        bench.tickets(1);
    }
    EXPECT_EQ(folder.names().size(), 0U);
}

TEST(TtyServer, ReplacesALinkToAnotherTerminalAndNothingElse) {
    const TemporaryFolder folder;
    const std::string link = folder / "printer";
    std::filesystem::create_symlink("/dev/pts/99999", link);
    {
        const ServerBench bench(onTerminal(smallDevice(), link));
        EXPECT_EQ(std::filesystem::read_symlink(link), deviceOf(bench));
        std::filesystem::remove(link);
        std::filesystem::create_symlink("elsewhere", link);
    }
    EXPECT_EQ(std::filesystem::read_symlink(link), "elsewhere");

    const std::string sentence =
        "cannot make the link " + link + ": there is something else of that name";
    const auto failure = [&]() -> std::string {
        try {
            const ServerBench bench(onTerminal(smallDevice(), link));
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(failure(), sentence);
    std::filesystem::remove(link);
    test::writeFile(link, "mine");
    EXPECT_EQ(failure(), sentence);
    EXPECT_EQ(test::readFile(link), "mine");
}

TEST(TtyServer, StopsWithTheDeviceOpenAndWithout) {
    {
        ServerBench bench(onTerminal());
        const TtyClient client(deviceOf(bench));
        ASSERT_TRUE(bench.isConnected());
        bench.server.stop();
        EXPECT_EQ(client.read(1), "");  // hung up
    }
    ServerBench idle(onTerminal());
    idle.server.stop();
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
